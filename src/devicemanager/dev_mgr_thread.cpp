/** The thread "PLDM_DevMgr": start-up, then host power off. */
#include "devicemanager/device_manager.hpp"

#include "common/log.hpp"
#include "common/process_flags.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "event_handler/notifications.hpp"

#include <malloc.h>

namespace vantric {

void DeviceManager::DevMgrThread() {
    {
        std::unique_lock lock(dbusReadyMutex);
        dbusReadyCond.wait(lock, [] { return dbusReady; });
    }
    // Before the attachment: the first table comes by itself and must find its observer.
    RegisterObserver(this);
    mctpClient = std::make_unique<MctpClient>();
    SubscribeToEvents();
    DeleteDevicesThread();
}

void DeviceManager::DeleteDevicesThread() {
    std::uint64_t changesSeen = 0;
    while (true) {
        {
            // Counted, so that a change isn't lost that comes while devices are being removed.
            std::unique_lock lock(hostPowerMutex);
            hostPowerCond.wait(lock, [&] { return hostPowerChanges != changesSeen; });
            changesSeen = hostPowerChanges;
            if (hostPowerState != HOST_POWER_OFF) {
                continue;
            }
        }
        VANTRIC_LOG(LOG_LEVEL_TRACE, "EVENT_POWER_OFF Received deleting the devices\n");
        if (DeleteAllDevices()) {
            DBusHandler::instance().ResetNumbering();
            malloc_trim(0);
        }
    }
}

bool DeviceManager::DeleteAllDevices() {
    const std::scoped_lock lock(devicesMutex);
    if (hostPowerState != HOST_POWER_OFF) {
        return false; // on again while a table was at work, and that table's devices are good
    }
    for (const auto& [ldid, device] : devices) {
        device->Stop();
    }
    devices.clear();
    return true;
}

} // namespace vantric
