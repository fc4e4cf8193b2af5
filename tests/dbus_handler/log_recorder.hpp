// SPDX-License-Identifier: Apache-2.0
/** The platform's log as texts of one line; see captured_log.hpp, which it needs. */
#pragma once

#include <string>
#include <vector>

namespace vantric::test {

/** Returns the lines logged by all threads since the last call, in their order, as in
 *  "1 dbusClear: text": level, function and message. The first call begins it and returns none. */
std::vector<std::string> TakeLog();

} // namespace vantric::test
