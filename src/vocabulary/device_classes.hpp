// SPDX-License-Identifier: Apache-2.0
/** The classes of PCIe devices that are served, and where their objects stand. */
#pragma once

#include <cstdint>
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

/** What all inventory paths begin with. */
inline constexpr std::string_view inventoryRoot = "/xyz/openbmc_project/inventory/system";

/** What all sensor paths begin with, without a slash at the end. */
inline constexpr std::string_view sensorsRoot = "/xyz/openbmc_project/sensors";
inline constexpr std::string_view temperatureRoot = "/xyz/openbmc_project/sensors/temperature";
inline constexpr std::string_view powerRoot = "/xyz/openbmc_project/sensors/power";

/** Inventory paths of accelerators and of CXL memory begin with these. */
inline constexpr std::string_view acceleratorInventoryRoot =
    "/xyz/openbmc_project/inventory/system/accelerator/";
inline constexpr std::string_view procAcceleratorInventoryRoot =
    "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/";
inline constexpr std::string_view cxlMemoryInventoryRoot =
    "/xyz/openbmc_project/inventory/system/cxl/memory/";

/** Path of the board whose one endpoint speaks for several accelerators. */
inline constexpr std::string_view boardInventoryPath = "/xyz/openbmc_project/inventory/system/UBB";

/** The inventory path of a class, which ends in a slash; empty for a class that isn't served. */
std::string_view InventoryBasePath(std::uint8_t deviceClass);

} // namespace vantric
