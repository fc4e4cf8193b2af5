/** Takes the place of the platform's sensor data cache in a test executable. */
#pragma once

#include <set>
#include <string>
#include <vector>

namespace vantric::test {

/** Returns the calls since the last call of this, in order, each as "name path-or-key more". */
std::vector<std::string> TakeStoreCalls();

/** The properties whose new values the cache refuses. */
extern std::set<std::string> refusedProperties;

} // namespace vantric::test
