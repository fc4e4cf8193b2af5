// SPDX-License-Identifier: Apache-2.0
/** The way to the main thread: requests through the platform's channel to their handlers. */
#pragma once

#include "publisher/publisher.hpp"

namespace vantric {

/** Posts each request to its handler in handlers.hpp. */
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
