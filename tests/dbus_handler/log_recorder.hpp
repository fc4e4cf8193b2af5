/** Takes the place of the platform's log in a test executable. */
#pragma once

#include <string>
#include <vector>

namespace vantric::test {

/** Returns the lines logged by all threads since the last call, in their order: level, then
 * function, then message, as in "1 dbusClear: text". What stands before the function in a line is
 * left out, and so is the end of line. */
std::vector<std::string> TakeLog();

} // namespace vantric::test
