/** Creation of the objects of numeric sensors. */
#include "common/log.hpp"
#include "dbus_handler/create_object.hpp"
#include "dbus_handler/probe_properties.hpp"
#include "dbus_handler/sensor_properties.hpp"

namespace vantric {

void DBusHandler::InsertSensor(const SensorInsertRequest& request) {
    switch (request.sensor.sensorKind) {
    case SENSOR_KIND_THERMAL:
        CreateSensor(thermalObjects, request);
        break;
    case SENSOR_KIND_PROBE:
        CreateSensor(probeObjects, request);
        break;
    case SENSOR_KIND_THERMAL_PROBE:
        CreateThermalProbe(request);
        break;
    default:
        break; // a sensor that nobody needs
    }
}

template <typename Composition>
void DBusHandler::CreateSensor(ObjectStore<Composition>& store,
                               const SensorInsertRequest& request) {
    createDbusObj(store, request.deviceLdid, request.objectPath, [&](const std::string& path) {
        return std::make_shared<Composition>(*bus, path, BuildSensorProperties(request, path));
    });
}

void DBusHandler::CreateThermalProbe(const SensorInsertRequest& request) {
    const std::uint32_t heard = FruEventsOf(request.slot);
    CreateSensor(thermalProbeObjects, request);
    if (FruEventsOf(request.slot) != heard) {
        // The event found no sensor to retype, and the sensor may have its type from before it.
        UpdateSensorType(request.slot);
    }
}

PropertyBags DBusHandler::BuildSensorProperties(const SensorInsertRequest& request,
                                                const std::string& path) {
    const std::string& ldid = EffectiveLdid(request);
    const std::uint8_t kind = request.sensor.sensorKind;
    PropertyBags bags;
    FillOpenBmcBags(bags, request);
    if (kind == SENSOR_KIND_THERMAL_PROBE || kind == SENSOR_KIND_PROBE) {
        Bag<BAG_PROBE>(bags) = BuildProbeProperties(request.sensor, ldid, path, numbering);
    }
    if (kind == SENSOR_KIND_THERMAL_PROBE || kind == SENSOR_KIND_THERMAL) {
        Bag<BAG_THERMAL_SENSOR>(bags) =
            BuildThermalProperties(request, path, DeviceClassOf(request.inventoryPath, ldid));
    }
    return bags;
}

PropertyBag<bindings::ThermalSensor>
DBusHandler::BuildThermalProperties(const SensorInsertRequest& request, const std::string& path,
                                    DeviceClass deviceClass) {
    const bool network =
        deviceClass == DEVICE_CLASS_NETWORK || deviceClass == DEVICE_CLASS_EMBEDDED_NIC;
    const bool ocpCard = network && IsOcpCard(request.slot);
    const ThermalType type = ThermalTypeOf(deviceClass, request.sensor, request.identity, ocpCard);
    if (type.category != SENSOR_CATEGORY_NONE) {
        sensorCategories.try_emplace(path, type.category);
    }
    return MakeThermalBag(request.slot, deviceClass, type,
                          numbering.InstanceOf(path, type.counter));
}

} // namespace vantric
