// SPDX-License-Identifier: Apache-2.0
#include "device/endpoints.hpp"

#include "common/log.hpp"
#include "vocabulary/ldid.hpp"

#include <algorithm>
#include <utility>

namespace vantric {

Endpoints::Endpoints(const DeviceDetails& details, const UdidReader& udids)
    : udids(udids), slotNumber(details.slotNumber), embedded(Ldid(details.ldid).IsEmbeddedNic()),
      mI2C_EIDs(details.i2cEIDs), mVDM_EIDs(details.vdmEIDs), useI2C(mVDM_EIDs.empty()) {}

std::unique_lock<std::mutex> Endpoints::Acquire() {
    const std::scoped_lock turn(turnMutex);
    return std::unique_lock(deviceMutex);
}

std::unique_lock<std::mutex> Endpoints::BeginWork() {
    auto lock = Acquire();
    workGeneration = generation;
    workControllers = controllerEIDMap;
    return lock;
}

bool Endpoints::SeveralMovedSinceWorkBegan() const {
    return controllerEIDMap.size() >= 2 && controllerEIDMap != workControllers;
}

void Endpoints::Replace(std::vector<EID_table> i2cEIDs, std::vector<EID_table> vdmEIDs) {
    mI2C_EIDs = std::move(i2cEIDs);
    mVDM_EIDs = std::move(vdmEIDs);
    useI2C = mVDM_EIDs.empty();
    ++generation;
    Update_Controller_EID_Map();
}

bool Endpoints::UseI2C_EIDs() {
    if (useI2C) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Device is already using I2C EP\n");
        return false;
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Use I2C EIDs for slot %d\n", slotNumber);
    useI2C = true;
    if (mI2C_EIDs.empty()) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "mI2C_EIDs vector is empty for slot %d\n", slotNumber);
        return false;
    }
    Update_Controller_EID_Map();
    return true;
}

void Endpoints::Update_Controller_EID_Map() {
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

void Endpoints::OrderVdmControllers() {
    if (embedded) {
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

void Endpoints::OrderI2cControllers() {
    std::map<std::string, std::uint16_t> byUdid;
    for (const EID_table& endpoint : mI2C_EIDs) {
        std::string key;
        if (mI2C_EIDs.size() > 1) {
            key = udids.getUDIDPropertyVal(static_cast<std::uint8_t>(slotNumber),
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

} // namespace vantric
