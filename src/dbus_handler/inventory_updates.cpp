/** What changes on inventory objects: firmware version and health. */
#include "common/log.hpp"
#include "common/utf8.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/handlers.hpp"
#include "dbus_handler/request_shape.hpp"

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

int dbusFWDataUpdate(void* /*context*/, void* requestData, unsigned long requestSize) {
    return HandleRequest<FirmwareRequest>(
        __func__, requestData, requestSize, [](const FirmwareRequest& request) {
            DBusHandler::instance().updateFWVersion(request.deviceLdid, request.version);
            return 0;
        });
}

int dbusUpdateDeviceHealthStatus(void* /*context*/, void* requestData, unsigned long requestSize) {
    return HandleRequest<HealthStatusRequest>(
        __func__, requestData, requestSize, [](const HealthStatusRequest& request) {
            DBusHandler::instance().UpdateDeviceHealthStatus(request.deviceLdid, request.severity);
            return 0;
        });
}

/** Writes to each inventory object of the device, whichever of the stores it is in. */
template <typename Write>
void DBusHandler::WriteInventories(const std::string& ldid, Write write) {
    const std::lock_guard lock(objectsMutex);
    WriteStore(inventoryObjects, ldid, write);
    WriteStore(acceleratorObjects, ldid, write);
    WriteStore(fruInventoryObjects, ldid, write);
}

void DBusHandler::updateFWVersion(const std::string& ldid, const std::string& version) {
    try {
        WriteInventories(ldid, [text = ValidUtf8(version)](bindings::Inventory& inventory) {
            inventory.firmwareVersion(text);
        });
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Error in sending the signal: %s \n", error.what());
    }
}

void DBusHandler::UpdateDeviceHealthStatus(const std::string& ldid, std::uint8_t severity) {
    try {
        WriteInventories(
            ldid, [severity](bindings::Inventory& inventory) { inventory.deviceStatus(severity); });
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Error in sending the signal: %s \n", error.what());
    }
}

} // namespace vantric
