// SPDX-License-Identifier: Apache-2.0
#include "devicemanager/device_manager.hpp"

#include "accelerator/accelerator.hpp"
#include "common/log.hpp"
#include "common/process_flags.hpp"
#include "memorydevice/memory_device.hpp"
#include "nicdevice/nic_device.hpp"
#include "vocabulary/device_classes.hpp"

#include <algorithm>

namespace vantric {

namespace {

/** Makes commands that time out give way, for as long as it lives. It begins before the wait for a
 *  mutex that such a command keeps, and ends before the mutex is free again. */
class NewEndPointsAtHand {
public:
    NewEndPointsAtHand() { useNewEndPoints = true; }
    ~NewEndPointsAtHand() { useNewEndPoints = false; }
    NewEndPointsAtHand(const NewEndPointsAtHand&) = delete;
    NewEndPointsAtHand& operator=(const NewEndPointsAtHand&) = delete;
};

std::shared_ptr<Device> MakeDevice(const DeviceDetails& details, const BusDoors& doors) {
    const std::string basePath(InventoryBasePath(details.deviceType));
    switch (details.deviceType) {
    case PCIE_CLASS_NIC:
    case PCIE_CLASS_INFINIBAND:
    case PCIE_CLASS_FIBRE_CHANNEL:
    case PCIE_CLASS_EMBEDDED_NIC:
        return std::make_shared<NicDevice>(details, basePath, doors);
    case PCIE_CLASS_CXL_MEMORY:
        return std::make_shared<MemoryDevice>(details, basePath, doors);
    case PCIE_CLASS_ACCELERATOR:
        return std::make_shared<Accelerator>(details, basePath, doors);
    default:
        return nullptr;
    }
}

} // namespace

void DeviceManager::Update(EventKind kind, const std::any& payload) {
    switch (kind) {
    case FW_UPDATE_START:
        VANTRIC_LOG(LOG_LEVEL_TRACE, "FW_UPDATE_START\n");
        SetFwUpdateInProgress(true);
        break;
    case FW_UPDATE_END:
        VANTRIC_LOG(LOG_LEVEL_TRACE, "FW_UPDATE_END\n");
        SetFwUpdateInProgress(false);
        break;
    case END_POINT_TABLE_UPDATED:
        VANTRIC_LOG(LOG_LEVEL_TRACE, "END_POINT_TABLE_UPDATED\n");
        TakeTable(payload);
        break;
    }
}

void DeviceManager::TakeTable(const std::any& payload) {
    const std::uint64_t powerOffs = PowerOffsHeard(); // those that this table is newer than
    std::unique_lock lock(tableMutex, std::defer_lock);
    {
        const NewEndPointsAtHand newEndPoints;
        lock.lock();
        ServePowerOffs(powerOffs);
    }
    createDevicesFromDiscoveredMap(filterPLDMSupportedDevices(payload));
    RemoveUndiscoveredDevices();
}

void DeviceManager::SetFwUpdateInProgress(bool inProgress) {
    // Start and end come on two threads, which may get the mutex in another order.
    fwUpdateInProgress = inProgress;
    const std::scoped_lock lock(devicesMutex);
    for (const auto& [ldid, device] : devices) {
        device->SetFwUpdateInProgress(fwUpdateInProgress);
    }
}

void DeviceManager::createDevicesFromDiscoveredMap(const DiscoveredMap& discovered) {
    discoveredDevices.clear();
    for (const auto& [ldid, details] : discovered) {
        if (details.i2cEIDs.empty() && details.vdmEIDs.empty()) {
            continue;
        }
        if (createDevice(ldid, details)) {
            discoveredDevices.push_back(ldid);
        } else {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "createDevice() failed for device [%s]\n", ldid.c_str());
        }
    }
}

bool DeviceManager::createDevice(const std::string& ldid, const DeviceDetails& details) {
    if (UpdateExistingDevice(ldid, details)) {
        return true;
    }
    const auto device = MakeDevice(details, doors);
    if (!device) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Device type [%d] is not supported\n", details.deviceType);
        return false;
    }
    device->Initialize();
    const std::scoped_lock lock(devicesMutex);
    devices.emplace(ldid, device);
    return true;
}

bool DeviceManager::UpdateExistingDevice(const std::string& ldid, const DeviceDetails& details) {
    std::unique_lock lock(devicesMutex, std::defer_lock);
    const NewEndPointsAtHand newEndPoints;
    lock.lock();
    const auto device = devices.find(ldid);
    if (device == devices.end()) {
        return false;
    }
    if (device->second->UsesI2C() || device->second->State() != DEVICE_MONITORING) {
        device->second->UpdateEIDTables(details.i2cEIDs, details.vdmEIDs);
    }
    return true;
}

void DeviceManager::RemoveUndiscoveredDevices() {
    const std::scoped_lock lock(devicesMutex);
    std::erase_if(devices, [this](const auto& entry) {
        const auto& [ldid, device] = entry;
        if (std::ranges::find(discoveredDevices, ldid) != discoveredDevices.end()) {
            return false;
        }
        device->SetState(DEVICE_STOPPED);
        device->Stop();
        return true;
    });
    if (devices.empty()) {
        doors.publisher.ResetNumbering().LogFailure(LOG_LEVEL_ERROR);
    }
}

} // namespace vantric
