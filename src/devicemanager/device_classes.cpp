#include "devicemanager/device_classes.hpp"

#include <unordered_map>

namespace vantric {

std::optional<std::string> MakeLdid(std::uint8_t deviceClass, std::uint16_t number) {
    static const std::unordered_map<std::uint8_t, std::string> deviceLdidPrefixes{
        {DEVICE_CLASS_NIC, "NIC.Slot."},
        {DEVICE_CLASS_INFINIBAND, "InfiniBand.Slot."},
        {DEVICE_CLASS_FIBRE_CHANNEL, "FC.Slot."},
        {DEVICE_CLASS_ACCELERATOR, "ProcAccelerator.Slot."},
        {DEVICE_CLASS_CXL_MEMORY, "CXLMemory.Slot."},
        {DEVICE_CLASS_EMBEDDED_NIC, "NIC.Embedded."},
    };
    const auto prefix = deviceLdidPrefixes.find(deviceClass);
    if (prefix == deviceLdidPrefixes.end()) {
        return std::nullopt;
    }
    return prefix->second + std::to_string(number);
}

std::string_view InventoryBasePath(std::uint8_t deviceClass) {
    switch (deviceClass) {
    case DEVICE_CLASS_NIC:
        return "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/";
    case DEVICE_CLASS_INFINIBAND:
        return "/xyz/openbmc_project/inventory/system/networkdevice/InfiniBand/Slot/";
    case DEVICE_CLASS_FIBRE_CHANNEL:
        return "/xyz/openbmc_project/inventory/system/networkdevice/FC/Slot/";
    case DEVICE_CLASS_ACCELERATOR:
        return "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/";
    case DEVICE_CLASS_CXL_MEMORY:
        return "/xyz/openbmc_project/inventory/system/cxl/memory/Slot/";
    case DEVICE_CLASS_EMBEDDED_NIC:
        return "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Embedded/";
    default:
        return {};
    }
}

} // namespace vantric
