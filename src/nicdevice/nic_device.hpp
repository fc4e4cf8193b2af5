// SPDX-License-Identifier: Apache-2.0
/** Network adapters, Fibre Channel and InfiniBand cards, and the embedded NIC. */
#pragma once

#include "device/device.hpp"

namespace vantric {

/** The full case of a device: several controllers, and patience with failures over I2C. */
class NicDevice : public Device {
public:
    NicDevice(const DeviceDetails& details, const std::string& basePath, const BusDoors& doors);

protected:
    void InventoryTheDevice() override;
    VantricStatus MonitorTheDevice() override;

private:
    VantricStatus MonitorController(PLDMCmds& endpoint, const Controller& controller);
    void ModelControllers();
    bool ToleratesMonitorFailure() const;

    std::uint8_t i2cMonitorFailures = 0; ///< tolerated since the last good inventory
};

} // namespace vantric
