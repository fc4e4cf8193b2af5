#include "dbus_handler/channel_publisher.hpp"

#include "dbus_handler/handlers.hpp"
#include "dbus_handler/post_request.hpp"

#include <utility>

namespace vantric {

PostResult ChannelPublisher::InsertSensor(SensorInsertRequest request) {
    return PostRequest(dbusDataInsert, std::move(request));
}

PostResult ChannelPublisher::SetSensorValue(SensorValueRequest request) {
    return PostRequest(dbusSetSensorValue, std::move(request));
}

PostResult ChannelPublisher::InsertStateSensor(StateSensorRequest request) {
    return PostRequest(dbusStateSensorDataInsert, std::move(request));
}

PostResult ChannelPublisher::SetStateSensorValue(StateSensorRequest request) {
    return PostRequest(dbusSetStateSensorValue, std::move(request));
}

PostResult ChannelPublisher::InsertFruInventory(FruInventoryRequest request) {
    return PostRequest(dbusFruDataInsert, std::move(request));
}

PostResult ChannelPublisher::InsertPlainInventory(PlainInventoryRequest request) {
    return PostRequest(dbusInvDataInsert, std::move(request));
}

PostResult ChannelPublisher::UpdateControllerInventory(ControllerRequest request) {
    return PostRequest(dbusControllerData, std::move(request));
}

PostResult ChannelPublisher::UpdateFWVersion(FirmwareRequest request) {
    return PostRequest(dbusFWDataUpdate, std::move(request));
}

PostResult ChannelPublisher::UpdateDeviceHealthStatus(HealthStatusRequest request) {
    return PostRequest(dbusUpdateDeviceHealthStatus, std::move(request));
}

PostResult ChannelPublisher::Clear(ClearRequest request) {
    return PostRequest(dbusClear, std::move(request));
}

PostResult ChannelPublisher::ResetNumbering() {
    return PostRequest(dbusResetNumbering, NumberingResetRequest{});
}

} // namespace vantric
