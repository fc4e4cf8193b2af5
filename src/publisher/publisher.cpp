// SPDX-License-Identifier: Apache-2.0
#include "publisher/publisher.hpp"

namespace vantric {

void PostResult::LogFailure(LogLevel level, const char* what) const {
    if (execRet != 0) {
        VANTRIC_LOG(level, "%s ERROR, execRet = %d\n", what, execRet);
    }
}

} // namespace vantric
