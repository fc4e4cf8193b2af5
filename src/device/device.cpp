#include "device/device.hpp"

#include "common/log.hpp"
#include "common/thread_name.hpp"
#include "vocabulary/ldid.hpp"

#include <utility>

namespace vantric {

Device::Device(const DeviceDetails& details, std::string basePath, const BusDoors& doors)
    : doors(doors), slotNumber(details.slotNumber), mI2C_EIDs(details.i2cEIDs),
      mVDM_EIDs(details.vdmEIDs), inventoryBasePath(std::move(basePath)),
      identity(details.identity), cpuAffinity(details.cpuAffinity), ldid(details.ldid) {}

Device::~Device() {
    const auto lock = Acquire();
    cmds.clear();
}

void Device::Initialize() {
    running = true;
    useI2C = mVDM_EIDs.empty();
    Update_Controller_EID_Map();
    const auto slot = static_cast<std::uint8_t>(slotNumber);
    for (const auto& [index, eid] : controllerEIDMap) {
        cmds.push_back(std::make_unique<PLDMCmds>(slot, static_cast<std::uint8_t>(eid)));
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Created PLDMCMD object for slot %d & eid %d\n", slotNumber,
                    eid);
    }
    modeling = std::make_unique<Modeling>(
        ModelingParameters{
            .slot = slot,
            .ldid = ldid,
            .inventoryBase = inventoryBasePath,
            .multipleControllers = cmds.size() != 1,
            .identity = identity,
            .cpuAffinity = static_cast<std::uint8_t>(cpuAffinity),
        },
        doors.publisher);
    monitorCycles = 0;
    stateSensorCycles = 0;
    firmwareVersion.clear();
    state = DEVICE_INVENTORY;
    monitorThread = std::thread(&Device::InvMonThread, this);
    NameThread(monitorThread,
               (IsEmbedded() ? "PLDM_EMB_" : "PLDM_Slot_") + std::to_string(slotNumber));
}

void Device::Stop() {
    running = false;
    if (monitorThread.joinable()) {
        monitorThread.join();
    }
}

std::unique_lock<std::mutex> Device::Acquire() {
    const std::scoped_lock turn(turnMutex);
    return std::unique_lock(deviceMutex);
}

std::unique_lock<std::mutex> Device::BeginWork() {
    auto lock = Acquire();
    workGeneration = generation;
    workControllers = controllerEIDMap;
    return lock;
}

bool Device::IsEmbedded() const {
    return Ldid(ldid).IsEmbeddedNic();
}

} // namespace vantric
