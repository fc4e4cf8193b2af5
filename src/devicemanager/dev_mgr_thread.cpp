// SPDX-License-Identifier: Apache-2.0
/** The thread "PLDM_DevMgr": start-up, then host power off. */
#include "devicemanager/device_manager.hpp"

#include "common/log.hpp"
#include "common/process_flags.hpp"

#include <malloc.h>

namespace vantric {

void DeviceManager::DevMgrThread() {
    {
        std::unique_lock lock(dbusReadyMutex);
        dbusReadyCond.wait(lock, [] { return dbusReady; });
    }
    {
        // No device is older than the attachment: there is nothing that a power off could end yet.
        const std::scoped_lock lock(hostPowerMutex);
        powerOffsServed = hostPowerOffs;
    }
    // Before the attachment: the first table comes by itself and must find its observer.
    RegisterObserver(*this);
    mctpClient = std::make_unique<MctpClient>();
    SubscribeToEvents();
    DeleteDevicesThread();
}

void DeviceManager::DeleteDevicesThread() {
    while (true) {
        std::uint64_t heard = 0;
        {
            std::unique_lock lock(hostPowerMutex);
            hostPowerCond.wait(lock, [this] { return powerOffsServed != hostPowerOffs; });
            heard = hostPowerOffs;
        }
        const std::scoped_lock lock(tableMutex);
        ServePowerOffs(heard);
    }
}

std::uint64_t DeviceManager::PowerOffsHeard() {
    const std::scoped_lock lock(hostPowerMutex);
    return hostPowerOffs;
}

void DeviceManager::ServePowerOffs(std::uint64_t heard) {
    {
        // Counted: one that comes while devices are being removed isn't lost, nor is one after
        // which the host is on again before its turn comes.
        const std::scoped_lock lock(hostPowerMutex);
        if (powerOffsServed >= heard) {
            return;
        }
        powerOffsServed = heard;
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "EVENT_POWER_OFF Received deleting the devices\n");
    DeleteAllDevices();
    doors.publisher.ResetNumbering().LogFailure(LOG_LEVEL_ERROR);
    malloc_trim(0);
}

void DeviceManager::DeleteAllDevices() {
    const std::scoped_lock lock(devicesMutex);
    for (const auto& [ldid, device] : devices) {
        device->Stop();
    }
    devices.clear();
}

} // namespace vantric
