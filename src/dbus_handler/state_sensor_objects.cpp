/** State sensors: their objects and their states. */
#include "dbus_handler/create_object.hpp"
#include "dbus_handler/handlers.hpp"
#include "dbus_handler/request_shape.hpp"
#include "dbus_handler/state_sensor_properties.hpp"

namespace vantric {

int dbusStateSensorDataInsert(void* /*context*/, void* requestData, unsigned long requestSize) {
    const char* const handler = __func__;
    return HandleRequest<StateSensorRequest>(
        handler, requestData, requestSize, [handler](const StateSensorRequest& request) {
            if (request.statePath.empty()) {
                return RefuseRequest(handler, "Dbus path emtpy!");
            }
            DBusHandler::instance().InsertStateSensor(request);
            return 0;
        });
}

int dbusSetStateSensorValue(void* /*context*/, void* requestData, unsigned long requestSize) {
    return HandleRequest<StateSensorRequest>(
        __func__, requestData, requestSize, [](const StateSensorRequest& request) {
            DBusHandler::instance().SetStateSensorValue(request);
            return 0;
        });
}

void DBusHandler::InsertStateSensor(const StateSensorRequest& request) {
    createDbusObj(stateSensorObjects, request.deviceLdid, request.statePath,
                  [&](const std::string& path) {
                      PropertyBags bags;
                      Bag<BAG_STATE_SENSOR>(bags) = BuildStateSensorProperties(request, path);
                      return std::make_shared<StateSensorDbusInterface>(*bus, path, bags);
                  });
}

void DBusHandler::SetStateSensorValue(const StateSensorRequest& request) {
    if (const auto object = FindObject(stateSensorObjects, request.deviceLdid, request.searchKey)) {
        object->stateSensorDetails(BuildStateDetails(request, request.memberNames.size()));
    }
}

} // namespace vantric
