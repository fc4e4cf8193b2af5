// SPDX-License-Identifier: Apache-2.0
/** The results of calls into sd-bus and sd-event. */
#pragma once

#include <string>
#include <system_error>

namespace vantric::test {

/** Returns the result of a call.
 *  @throws std::system_error with the call's name if the result is a negative error number. */
inline int Check(const std::string& call, int result) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), call);
    }
    return result;
}

} // namespace vantric::test
