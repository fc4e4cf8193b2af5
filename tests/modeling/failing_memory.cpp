#include "failing_memory.hpp"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t left = SIZE_MAX;
thread_local bool failed = false;

} // namespace

void* operator new(std::size_t size) {
    if (left == 0) {
        failed = true;
        left = SIZE_MAX;
        throw std::bad_alloc();
    }
    if (left != SIZE_MAX) {
        --left;
    }
    void* memory = std::malloc(size > 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace vantric::test {

FailingMemory::FailingMemory(std::size_t allocationsBefore) {
    failed = false;
    left = allocationsBefore;
}

FailingMemory::~FailingMemory() {
    left = SIZE_MAX;
}

bool FailingMemory::Failed() const {
    return failed;
}

} // namespace vantric::test
