/** Memory that runs short on demand. */
#pragma once

#include <cstddef>

namespace vantric::test {

/** While one lives, one allocation of this thread fails: the one behind the first so many. */
class FailingMemory {
public:
    explicit FailingMemory(std::size_t allocationsBefore);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /** Whether it has come to that allocation. */
    bool Failed() const;
};

} // namespace vantric::test
