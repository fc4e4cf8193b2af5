// SPDX-License-Identifier: Apache-2.0
/** What changes on inventory objects: firmware version and health. */
#include "common/log.hpp"
#include "common/utf8.hpp"
#include "dbus_handler/published_objects.hpp"

namespace vantric {

namespace {

template <typename Object, typename Write>
void WriteStore(const ObjectStore<Object>& store, const std::string& ldid, const Write& write) {
    const auto device = store.find(ldid);
    if (device == store.end()) {
        return;
    }
    for (const auto& [path, object] : device->second) {
        write(static_cast<bindings::Inventory&>(*object));
    }
}

} // namespace

/** Writes to each inventory object of the device, whichever of the stores it is in. */
template <typename Write>
void PublishedObjects::WriteInventories(const std::string& ldid, Write write) {
    const std::lock_guard lock(objectsMutex);
    WriteStore(inventoryObjects, ldid, write);
    WriteStore(acceleratorObjects, ldid, write);
    WriteStore(fruInventoryObjects, ldid, write);
}

void PublishedObjects::updateFWVersion(const FirmwareRequest& request) {
    try {
        WriteInventories(request.deviceLdid,
                         [text = ValidUtf8(request.version)](bindings::Inventory& inventory) {
                             inventory.firmwareVersion(text);
                         });
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Error in sending the signal: %s \n", error.what());
    }
}

void PublishedObjects::UpdateDeviceHealthStatus(const HealthStatusRequest& request) {
    try {
        WriteInventories(request.deviceLdid, [&](bindings::Inventory& inventory) {
            inventory.deviceStatus(request.severity);
        });
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Error in sending the signal: %s \n", error.what());
    }
}

} // namespace vantric
