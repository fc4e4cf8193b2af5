/** The classes of PCIe devices that are served, and what their names look like. */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantric {

/** Device classes of the platform's PCIe table. */
enum PcieDeviceClass : std::uint8_t {
    PCIE_CLASS_NIC = 1,
    PCIE_CLASS_INFINIBAND = 3,
    PCIE_CLASS_FIBRE_CHANNEL = 10,
    PCIE_CLASS_ACCELERATOR = 11,
    PCIE_CLASS_CXL_MEMORY = 18,
    PCIE_CLASS_EMBEDDED_NIC = 252,
};

/** The LDID of a device: the prefix of its class, and number. Nothing for a class that isn't
 *  served. */
std::optional<std::string> MakeLdid(std::uint8_t deviceClass, std::uint16_t number);

/** The inventory path of a class, which ends in a slash; empty for a class that isn't served. */
std::string_view InventoryBasePath(std::uint8_t deviceClass);

} // namespace vantric
