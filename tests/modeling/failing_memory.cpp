#include "failing_memory.hpp"

#include <cstdlib>
#include <new>

namespace vantric::test {

thread_local std::size_t allocationsBeforeFailure = never;

} // namespace vantric::test

void* operator new(std::size_t size) {
    auto& left = vantric::test::allocationsBeforeFailure;
    const bool fails = left == 0;
    if (left != vantric::test::never) {
        --left; // once past 0, never again
    }
    void* memory = fails ? nullptr : std::malloc(size > 0 ? size : 1);
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
