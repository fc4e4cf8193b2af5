/** The way to the main thread: requests through the platform's channel to their handlers. */
#pragma once

#include "publisher/publisher.hpp"

namespace vantric {

/** Copies each request to the heap and posts it to the handler that takes such a record (the
 *  dbus... functions of handlers.hpp), which owns it from then on. */
class ChannelPublisher : public Publisher {
public:
    PostResult InsertSensor(SensorInsertRequest request) override;
    PostResult SetSensorValue(SensorValueRequest request) override;
    PostResult InsertStateSensor(StateSensorRequest request) override;
    PostResult SetStateSensorValue(StateSensorRequest request) override;
    PostResult InsertFruInventory(FruInventoryRequest request) override;
    PostResult InsertPlainInventory(PlainInventoryRequest request) override;
    PostResult UpdateControllerInventory(ControllerRequest request) override;
    PostResult UpdateFWVersion(FirmwareRequest request) override;
    PostResult UpdateDeviceHealthStatus(HealthStatusRequest request) override;
    PostResult Clear(ClearRequest request) override;
    PostResult ResetNumbering() override;
};

} // namespace vantric
