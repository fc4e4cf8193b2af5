#include "devicemanager/device_classes.hpp"

#include <unordered_map>

namespace vantric {

std::optional<std::string> MakeLdid(std::uint8_t deviceClass, std::uint16_t number) {
    static const std::unordered_map<std::uint8_t, std::string> deviceLdidPrefixes{
        {PCIE_CLASS_NIC, "NIC.Slot."},
        {PCIE_CLASS_INFINIBAND, "InfiniBand.Slot."},
        {PCIE_CLASS_FIBRE_CHANNEL, "FC.Slot."},
        {PCIE_CLASS_ACCELERATOR, "ProcAccelerator.Slot."},
        {PCIE_CLASS_CXL_MEMORY, "CXLMemory.Slot."},
        {PCIE_CLASS_EMBEDDED_NIC, "NIC.Embedded."},
    };
    const auto prefix = deviceLdidPrefixes.find(deviceClass);
    if (prefix == deviceLdidPrefixes.end()) {
        return std::nullopt;
    }
    return prefix->second + std::to_string(number);
}

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
