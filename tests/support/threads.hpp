// SPDX-License-Identifier: Apache-2.0
/** The threads of this process, as the system shows them. */
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace vantric::test {

/** True if the thread sleeps, as it does while it waits for a mutex. */
bool Sleeps(pid_t thread);

/** The names of the threads that begin so, sorted. */
std::vector<std::string> ThreadNames(const std::string& begin);

} // namespace vantric::test
