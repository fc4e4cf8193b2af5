/** Memory that runs short on demand: failing_memory.cpp takes the place of operator new. */
#pragma once

#include <cstddef>
#include <limits>

namespace vantric::test {

inline constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

/** Allocations that this thread makes before one fails. Back at never once it has failed. */
extern thread_local std::size_t allocationsBeforeFailure;

} // namespace vantric::test
