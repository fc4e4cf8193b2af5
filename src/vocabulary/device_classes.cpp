// SPDX-License-Identifier: Apache-2.0
#include "vocabulary/device_classes.hpp"

namespace vantric {

std::string_view InventoryBasePath(std::uint8_t deviceClass) {
    switch (deviceClass) {
    case PCIE_CLASS_NIC:
        return "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/";
    case PCIE_CLASS_INFINIBAND:
        return "/xyz/openbmc_project/inventory/system/networkdevice/InfiniBand/Slot/";
    case PCIE_CLASS_FIBRE_CHANNEL:
        return "/xyz/openbmc_project/inventory/system/networkdevice/FC/Slot/";
    case PCIE_CLASS_ACCELERATOR:
        return "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/";
    case PCIE_CLASS_CXL_MEMORY:
        return "/xyz/openbmc_project/inventory/system/cxl/memory/Slot/";
    case PCIE_CLASS_EMBEDDED_NIC:
        return "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Embedded/";
    default:
        return {};
    }
}

} // namespace vantric
