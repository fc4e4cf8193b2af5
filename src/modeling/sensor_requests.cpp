/** Names of numeric sensors, and the posts that create their objects. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "common/post_request.hpp"
#include "dbus_handler/handlers.hpp"

namespace vantric {

namespace {

constexpr auto temperatureRoot = "/xyz/openbmc_project/sensors/temperature/";
constexpr auto powerRoot = "/xyz/openbmc_project/sensors/power/";

} // namespace

std::string Modeling::InventoryRoot() const {
    return device.inventoryBase + std::to_string(device.slot);
}

std::string Modeling::SensorPath(const __Sensor& sensor, const std::string& tag) const {
    const char* root = sensor.baseUnit == BASE_UNIT_WATTS ? powerRoot : temperatureRoot;
    return root + device.ldid + tag + std::to_string(sensor.sensorId);
}

void Modeling::UpdateDbus(const __Sensor& sensor, bool flat, std::uint8_t controller) {
    static_cast<void>(flat);
    const std::string inventoryPath =
        InventoryRoot() + (controller == 2 ? "/networkcontroller_2" : "/networkcontroller_1");
    std::string tag = "_sensorid_";
    if (device.multipleControllers) {
        tag = controller == 2 ? "_sensorid_ctrl2_" : "_sensorid_ctrl1_";
    }
    UpdateDbusForNumericSensor(sensor, device.slot, SensorPath(sensor, tag), "", inventoryPath,
                               "networkcontroller", sensor.entityInstance);
}

void Modeling::UpdateDbusForNumericSensor(const __Sensor& sensor, std::uint8_t slot,
                                          const std::string& sensorPath,
                                          const std::string& resolvedLdid,
                                          const std::string& inventoryPath, const std::string& name,
                                          std::uint16_t instance) {
    SensorInsertRequest request;
    request.sensor = sensor;
    request.sensor.entityInstance = instance;
    request.sensor.thresholdReadError = 0;
    request.objectPath = sensorPath;
    request.deviceLdid = device.ldid;
    request.inventoryPath = inventoryPath;
    request.entityName = name;
    request.resolvedLdid = resolvedLdid;
    request.slot = slot;
    request.identity = device.identity;
    request.cpuAffinity = device.cpuAffinity;
    const int result = PostRequest(dbusDataInsert, std::move(request));
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "OneWayChannel_Execute ERROR, execRet = %d\n", result);
    }
}

} // namespace vantric
