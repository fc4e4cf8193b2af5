/** Removal of a device's objects. */
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/handlers.hpp"
#include "dbus_handler/request_shape.hpp"

namespace vantric {

namespace {

template <typename Composition>
void Remove(ObjectStore<Composition>& store, const std::string& ldid) {
    const auto device = store.find(ldid);
    if (device == store.end()) {
        return;
    }
    for (const auto& [path, object] : device->second) {
        Composition::Withdrawn::EmitRemoved(*object);
    }
    store.erase(device);
}

} // namespace

int dbusClear(void* /*context*/, void* requestData, unsigned long requestSize) {
    return HandleRequest<ClearRequest>(
        __func__, requestData, requestSize, [](const ClearRequest& request) {
            DBusHandler::instance().Clear(request.deviceLdid, request.mode == CLEAR_SENSORS);
            return 0;
        });
}

void DBusHandler::Clear(const std::string& ldid, bool sensorsOnly) {
    const std::lock_guard lock(objectsMutex);
    Remove(thermalObjects, ldid);
    Remove(thermalProbeObjects, ldid);
    Remove(probeObjects, ldid);
    Remove(stateSensorObjects, ldid);
    if (sensorsOnly) {
        return;
    }
    Remove(inventoryObjects, ldid);
    Remove(acceleratorObjects, ldid);
    Remove(fruInventoryObjects, ldid);
    Remove(controllerObjects, ldid);
}

} // namespace vantric
