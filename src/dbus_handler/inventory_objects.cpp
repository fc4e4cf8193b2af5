/** Creation of the objects of devices and controllers. */
#include "dbus_handler/create_object.hpp"
#include "dbus_handler/initial_properties.hpp"
#include "vocabulary/ldid.hpp"

namespace vantric {

namespace {

constexpr auto slotRoot = "/xyz/openbmc_project/inventory/system/board/pcieslots";

PropertyBags InventoryBags(const std::string& ldid, const FruFields& fields) {
    PropertyBags bags;
    Bag<BAG_FRU>(bags) = BuildFruProperties(fields);
    Bag<BAG_INVENTORY>(bags) = BuildInventoryProperties(ldid, fields);
    return bags;
}

} // namespace

void PublishedObjects::InsertFruInventory(const FruInventoryRequest& request) {
    createDbusObj(fruInventoryObjects, request.deviceLdid, request.objectPath,
                  [&](const std::string& path) {
                      return std::make_shared<InventoryWithFRUDbusInterface>(
                          *bus, path, InventoryBags(request.deviceLdid, request.fields));
                  });
}

void PublishedObjects::InsertPlainInventory(const PlainInventoryRequest& request) {
    FruFields fields;
    fields.identity = request.identity;
    fields.cpuAffinity = request.cpuAffinity;
    fields.firmwareVersion = request.firmwareVersion;
    if (!Ldid(request.deviceLdid).IsAccelerator()) {
        createDbusObj(inventoryObjects, request.deviceLdid, request.objectPath,
                      [&](const std::string& path) {
                          return std::make_shared<InventoryDbusInterface>(
                              *bus, path, InventoryBags(request.deviceLdid, fields));
                      });
        return;
    }
    const std::string& ldid =
        request.resolvedLdid.empty() ? request.deviceLdid : request.resolvedLdid;
    createDbusObj(acceleratorObjects, request.deviceLdid, request.objectPath,
                  [&](const std::string& path) {
                      PropertyBags bags = InventoryBags(ldid, fields);
                      PutInventoryAssociation(
                          Bag<BAG_DEFINITIONS>(bags), AcceleratorAssociationName(path),
                          slotRoot + std::to_string(static_cast<std::uint8_t>(request.slot)));
                      PropertyBag<bindings::Accelerator> accelerator;
                      Put(accelerator, "Type", bindings::Accelerator::AcceleratorType::GPU);
                      return std::make_shared<AccInvDbusInterface>(*bus, path, bags, accelerator);
                  });
}

void PublishedObjects::UpdateControllerInventory(const ControllerRequest& request) {
    if (connection == nullptr || request.objectPath.empty()) {
        return;
    }
    try {
        PropertyBag<bindings::ControllerInventory> bag;
        Put(bag, "CPUAffinity", std::uint16_t{request.cpuAffinity});
        const auto object =
            std::make_shared<ControllerDbusInterface>(*bus, request.objectPath, bag);
        const std::lock_guard lock(objectsMutex);
        controllerObjects[request.deviceLdid].try_emplace(request.objectPath, object);
        ControllerDbusInterface::Announced::EmitAdded(*object);
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s\n", error.what());
    }
}

} // namespace vantric
