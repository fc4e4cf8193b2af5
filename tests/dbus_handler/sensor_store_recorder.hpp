// SPDX-License-Identifier: Apache-2.0
/** Takes the place of the platform's sensor data cache in a test executable. */
#pragma once

#include <string>
#include <vector>

namespace vantric::test {

/** Returns the calls since the last call of this, in order, each as "name path-or-key more". */
std::vector<std::string> TakeStoreCalls();

} // namespace vantric::test
