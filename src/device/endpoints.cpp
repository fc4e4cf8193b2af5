/** Which endpoints a device uses, and in what order they are its controllers. */
#include "device/device.hpp"

#include "common/log.hpp"

#include <algorithm>
#include <utility>

namespace vantric {

void Device::UpdateEIDTables(std::vector<EID_table> i2cEIDs, std::vector<EID_table> vdmEIDs) {
    const auto lock = Acquire();
    mI2C_EIDs = std::move(i2cEIDs);
    mVDM_EIDs = std::move(vdmEIDs);
    useI2C = mVDM_EIDs.empty();
    Update_Controller_EID_Map();
    ResetControllerEIDs();
    ++generation;
}

void Device::UseI2C_EIDs() {
    if (useI2C) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Device is already using I2C EP\n");
    } else {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Use I2C EIDs for slot %d\n", slotNumber);
        useI2C = true;
        if (!mI2C_EIDs.empty()) {
            Update_Controller_EID_Map();
            ResetControllerEIDs();
            return;
        }
        VANTRIC_LOG(LOG_LEVEL_WARNING, "mI2C_EIDs vector is empty for slot %d\n", slotNumber);
    }
    if (state == DEVICE_MONITORING) {
        StartWaiting();
    } else {
        state = DEVICE_SWITCH_TO_I2C;
    }
}

void Device::Update_Controller_EID_Map() {
    controllerEIDMap.clear();
    if (useI2C) {
        OrderI2cControllers();
    } else {
        OrderVdmControllers();
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "=== Controller EID Map for slot %d ===\n", slotNumber);
    for (const auto& [index, eid] : controllerEIDMap) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Index %u  ->  EID %u\n", static_cast<unsigned>(index),
                    static_cast<unsigned>(eid));
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "=== End of Controller EID Map ===\n");
}

void Device::OrderVdmControllers() {
    if (IsEmbedded()) {
        VANTRIC_LOG(LOG_LEVEL_TRACE,
                    "Device is Embedded sort using instance number instead of BDF\n");
        std::ranges::stable_sort(mVDM_EIDs, {}, [](const EID_table& endpoint) {
            return static_cast<std::int32_t>(endpoint.instance);
        });
    } else {
        std::ranges::stable_sort(mVDM_EIDs, {}, &EID_table::bdf);
    }
    std::uint8_t index = 0;
    for (const EID_table& endpoint : mVDM_EIDs) {
        controllerEIDMap[index++] = endpoint.eid;
    }
}

void Device::OrderI2cControllers() {
    std::map<std::string, std::uint16_t> byUdid;
    for (const EID_table& endpoint : mI2C_EIDs) {
        std::string key;
        if (mI2C_EIDs.size() > 1) {
            key = doors.udids.getUDIDPropertyVal(static_cast<std::uint8_t>(slotNumber),
                                                 endpoint.busAddress);
        }
        if (key.empty()) {
            key = std::to_string(endpoint.busAddress);
        }
        byUdid[key] = endpoint.eid;
    }
    std::uint8_t index = 0;
    for (const auto& [udid, eid] : byUdid) {
        controllerEIDMap[index++] = eid;
    }
}

void Device::ResetControllerEIDs() {
    auto endpoint = controllerEIDMap.cbegin();
    for (auto& command : cmds) {
        if (endpoint == controllerEIDMap.cend()) {
            break;
        }
        command->ResetEID(static_cast<std::uint8_t>(endpoint->second));
        ++endpoint;
    }
    if (state == DEVICE_SWITCH_TO_I2C || controllerEIDMap.size() >= 2) {
        state = DEVICE_INVENTORY;
    } else if (state == DEVICE_WAITING) {
        state = DEVICE_MONITORING;
    }
}

} // namespace vantric
