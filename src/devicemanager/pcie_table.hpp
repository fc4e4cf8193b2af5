/** Which PCIe device stands in a slot. */
#pragma once

#include "records/sensor.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** What the platform's PCIe table tells of one device. */
struct PcieDevice {
    std::uint8_t deviceType = 0; ///< PcieDeviceClass
    PciIdentity identity;
    std::uint16_t cpuAffinity = 0;
    std::string ldid;
};

/** Looks the device of an endpoint up. Any thread.
 *  @param device filled on success only
 *  @return 0, 1 when the library failed, 7 when it has no usable record */
int getDevicePCIeIDsForSlot(std::uint16_t slot, std::uint8_t epType, std::uint8_t slotType,
                            PcieDevice& device);

} // namespace vantric
