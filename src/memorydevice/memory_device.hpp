// SPDX-License-Identifier: Apache-2.0
/** CXL memory. */
#pragma once

#include "device/device.hpp"

namespace vantric {

/** The plain case of a device: numeric sensors, under names of its own that need no entity tree.
 *
 * It alone leaves its card in peace while a firmware update runs. The monitor thread then looks
 * once in the 5 s of an ordinary cycle whether the update is over, without a command and without
 * taking the device's mutex. */
class MemoryDevice : public Device {
public:
    MemoryDevice(const DeviceDetails& details, const std::string& basePath, const BusDoors& doors);

protected:
    void InventoryTheDevice() override;
    VantricStatus MonitorTheDevice() override;

private:
    VantricStatus MonitorEndpoint(PLDMCmds& endpoint);

    /** Publishes the sensors of the first endpoint; any further one is polled, but not shown. */
    void ModelSensors();

    /** Posts one sensor. One whose entity type has no word can't be named: it is logged and stays
     *  unpublished, and the others are none the worse for it. */
    void UpdateDbusForTempSensor(const __Sensor& sensor);
};

} // namespace vantric
