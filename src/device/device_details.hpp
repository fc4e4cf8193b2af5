// SPDX-License-Identifier: Apache-2.0
/** What discovery learns of one endpoint and of one device. */
#pragma once

#include "records/sensor.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vantric {

/** One endpoint of a device. */
struct EID_table {
    std::uint8_t busAddress = 0;
    std::uint16_t bdf = 0;
    std::uint16_t eid = 0;
    std::uint32_t instance = 0; ///< orders the VDM endpoints of an embedded device; else 0
};

/** One device, with all endpoints that lead to it. */
struct DeviceDetails {
    std::uint8_t deviceType = 0; ///< class from the PCIe table, or 252 for an embedded NIC
    std::uint8_t busAddress = 0;
    std::uint16_t bdf = 0;
    std::vector<EID_table> i2cEIDs;
    std::vector<EID_table> vdmEIDs;
    PciIdentity identity;
    std::uint16_t cpuAffinity = 0;
    std::uint16_t slotNumber = 0;
    std::string ldid;
};

} // namespace vantric
