// SPDX-License-Identifier: Apache-2.0
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/thread_name.hpp"
#include "vocabulary/ldid.hpp"

#include <utility>

namespace vantric {

Device::Device(const DeviceDetails& details, std::string basePath, const BusDoors& doors)
    : doors(doors), slotNumber(details.slotNumber), ldid(details.ldid),
      inventoryBasePath(std::move(basePath)), identity(details.identity),
      cpuAffinity(details.cpuAffinity), endpoints(details, doors.udids) {}

Device::~Device() {
    const auto lock = endpoints.Acquire();
    cmds.clear();
}

void Device::Initialize() {
    running = true;
    endpoints.Update_Controller_EID_Map();
    const auto slot = static_cast<std::uint8_t>(slotNumber);
    for (const auto& [index, eid] : endpoints.ControllerEIDMap()) {
        cmds.push_back(std::make_unique<PLDMCmds>(slot, static_cast<std::uint8_t>(eid)));
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Created PLDMCMD object for slot %d & eid %d\n", slotNumber,
                    eid);
    }
    modeling = std::make_unique<Modeling>(
        ModelingParameters{
            .slot = slot,
            .ldid = ldid,
            .inventoryBase = inventoryBasePath,
            .identity = identity,
            .cpuAffinity = static_cast<std::uint8_t>(cpuAffinity),
        },
        doors.publisher);
    state = DEVICE_INVENTORY;
    const bool embedded = Ldid(ldid).IsEmbeddedNic();
    monitorThread =
        StartThread((embedded ? "PLDM_EMB_" : "PLDM_Slot_") + std::to_string(slotNumber),
                    [this] { InvMonThread(); });
}

void Device::Stop() {
    running = false;
    if (monitorThread.joinable()) {
        monitorThread.join();
    }
}

void Device::UpdateEIDTables(std::vector<EID_table> i2cEIDs, std::vector<EID_table> vdmEIDs) {
    const auto lock = endpoints.Acquire();
    endpoints.Replace(std::move(i2cEIDs), std::move(vdmEIDs));
    ResetControllerEIDs();
}

void Device::ResetControllerEIDs() {
    const auto& controllers = endpoints.ControllerEIDMap();
    auto controller = controllers.cbegin();
    for (auto& command : cmds) {
        if (controller == controllers.cend()) {
            break;
        }
        command->ResetEID(static_cast<std::uint8_t>(controller->second));
        ++controller;
    }
    if (state == DEVICE_SWITCH_TO_I2C || controllers.size() >= 2) {
        state = DEVICE_INVENTORY;
    } else if (state == DEVICE_WAITING) {
        state = DEVICE_MONITORING;
    }
}

} // namespace vantric
