/** Readings on their way to the objects, and the removal of a device's objects. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/post_request.hpp"
#include "dbus_handler/handlers.hpp"

#include <chrono>

namespace vantric {

namespace {

/** Time for the bus's clients to see that objects have gone, before new ones come. */
constexpr std::chrono::seconds removalPause{2};

} // namespace

void Modeling::UpdateSensorTempValue(std::uint16_t sensorId, std::int32_t value,
                                     std::uint8_t sensorKind, std::uint8_t controller) {
    const char* tag = "_sensorid_";
    if (controller == 2) {
        tag = "sensorid_ctrl2_";
    } else if (device.multipleControllers) {
        tag = "_sensorid_ctrl1_";
    }
    SensorValueRequest request;
    request.value = value;
    request.deviceLdid = device.ldid;
    request.pathText = tag + std::to_string(sensorId);
    request.slot = device.slot;
    request.sensorKind = sensorKind;
    request.controller = controller;
    const int result = PostRequest(dbusSetSensorValue, std::move(request));
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "OneWayChannel_Execute dbusSetSensorValue ERROR, execRet = %d\n",
                    result);
    }
}

void Modeling::DeleteDBUSPaths(ClearMode mode) {
    const int result = PostRequest(dbusClear, ClearRequest{device.ldid, device.slot, mode});
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
