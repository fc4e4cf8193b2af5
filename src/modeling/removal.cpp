/** Takes a device's objects off the bus. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "vocabulary/timing.hpp"

namespace vantric {

void Modeling::DeleteDBUSPaths(ClearMode mode) {
    const int result = publisher.Clear({device.ldid, device.slot, mode}).ExecRet();
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "DeleteDBUSPaths ERROR for slot = %d, execRet = %d\n",
                    device.slot, result);
    } else {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "DeleteDBUSPaths SUCCESS for slot = %d, execRet = %d\n",
                    device.slot, result);
    }
    Pause(removalPause);
}

} // namespace vantric
