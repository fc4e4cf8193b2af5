// SPDX-License-Identifier: Apache-2.0
/** Creation of the objects of devices and controllers. */
#include "dbus_handler/create_object.hpp"
#include "dbus_handler/initial_properties.hpp"
#include "vocabulary/ldid.hpp"

namespace vantric {

void PublishedObjects::InsertFruInventory(const FruInventoryRequest& request) {
    createDbusObj(fruInventoryObjects, request.deviceLdid, request.objectPath,
                  [&](const std::string&) { return BuildFruInventoryProperties(request); });
}

void PublishedObjects::InsertPlainInventory(const PlainInventoryRequest& request) {
    const auto createIn = [&](auto& store) {
        createDbusObj(store, request.deviceLdid, request.objectPath, [&](const std::string& path) {
            return BuildPlainInventoryProperties(request, path);
        });
    };
    if (Ldid(request.deviceLdid).IsAccelerator()) {
        createIn(acceleratorObjects);
    } else {
        createIn(inventoryObjects);
    }
}

void PublishedObjects::UpdateControllerInventory(const ControllerRequest& request) {
    if (connection == nullptr || request.objectPath.empty()) {
        return;
    }
    try {
        const auto object = std::make_shared<ControllerDbusInterface>(
            *bus, request.objectPath, BuildControllerProperties(request));
        const std::lock_guard lock(objectsMutex);
        controllerObjects[request.deviceLdid].try_emplace(request.objectPath, object);
        ControllerDbusInterface::Announced::EmitAdded(*object);
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s\n", error.what());
    }
}

} // namespace vantric
