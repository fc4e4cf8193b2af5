/** State sensors: their objects and their states. */
#include "dbus_handler/create_object.hpp"
#include "dbus_handler/initial_properties.hpp"

namespace vantric {

void PublishedObjects::InsertStateSensor(const StateSensorRequest& request) {
    createDbusObj(stateSensorObjects, request.deviceLdid, request.statePath,
                  [&](const std::string& path) {
                      PropertyBags bags;
                      Bag<BAG_STATE_SENSOR>(bags) = BuildStateSensorProperties(request, path);
                      return std::make_shared<StateSensorDbusInterface>(*bus, path, bags);
                  });
}

void PublishedObjects::SetStateSensorValue(const StateSensorRequest& request) {
    if (const auto object = FindObject(stateSensorObjects, request.deviceLdid, request.searchKey)) {
        object->stateSensorDetails(BuildStateDetails(request, request.memberNames.size()));
    }
}

} // namespace vantric
