// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/channel_publisher.hpp"

#include "dbus_handler/handlers.hpp"

#include <utility>

namespace vantric {

PostResult ChannelPublisher::InsertSensor(SensorInsertRequest request) {
    return dbusDataInsert.Post(std::move(request));
}

PostResult ChannelPublisher::SetSensorValue(SensorValueRequest request) {
    return dbusSetSensorValue.Post(std::move(request));
}

PostResult ChannelPublisher::InsertStateSensor(StateSensorRequest request) {
    return dbusStateSensorDataInsert.Post(std::move(request));
}

PostResult ChannelPublisher::SetStateSensorValue(StateSensorRequest request) {
    return dbusSetStateSensorValue.Post(std::move(request));
}

PostResult ChannelPublisher::InsertFruInventory(FruInventoryRequest request) {
    return dbusFruDataInsert.Post(std::move(request));
}

PostResult ChannelPublisher::InsertPlainInventory(PlainInventoryRequest request) {
    return dbusInvDataInsert.Post(std::move(request));
}

PostResult ChannelPublisher::UpdateControllerInventory(ControllerRequest request) {
    return dbusControllerData.Post(std::move(request));
}

PostResult ChannelPublisher::UpdateFWVersion(FirmwareRequest request) {
    return dbusFWDataUpdate.Post(std::move(request));
}

PostResult ChannelPublisher::UpdateDeviceHealthStatus(HealthStatusRequest request) {
    return dbusUpdateDeviceHealthStatus.Post(std::move(request));
}

PostResult ChannelPublisher::Clear(ClearRequest request) {
    return dbusClear.Post(std::move(request));
}

PostResult ChannelPublisher::ResetNumbering() {
    return dbusResetNumbering.Post({});
}

} // namespace vantric
