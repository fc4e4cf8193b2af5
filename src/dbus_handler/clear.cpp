// SPDX-License-Identifier: Apache-2.0
/** Removal of a device's objects. */
#include "dbus_handler/published_objects.hpp"

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

void PublishedObjects::Clear(const ClearRequest& request) {
    const std::string& ldid = request.deviceLdid;
    const std::lock_guard lock(objectsMutex);
    Remove(thermalObjects, ldid);
    Remove(thermalProbeObjects, ldid);
    Remove(probeObjects, ldid);
    Remove(stateSensorObjects, ldid);
    if (request.mode == CLEAR_SENSORS) {
        return;
    }
    Remove(inventoryObjects, ldid);
    Remove(acceleratorObjects, ldid);
    Remove(fruInventoryObjects, ldid);
    Remove(controllerObjects, ldid);
}

} // namespace vantric
