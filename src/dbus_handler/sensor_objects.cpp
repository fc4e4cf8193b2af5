// SPDX-License-Identifier: Apache-2.0
/** Creation of the objects of sensors. */
#include "common/log.hpp"
#include "dbus_handler/create_object.hpp"
#include "dbus_handler/initial_properties.hpp"

namespace vantric {

void PublishedObjects::InsertSensor(const SensorInsertRequest& request) {
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
        break; // a sensor of no use to either
    }
}

template <typename Composition>
void PublishedObjects::CreateSensor(ObjectStore<Composition>& store,
                                    const SensorInsertRequest& request) {
    createDbusObj(store, request.deviceLdid, request.objectPath, [&](const std::string& path) {
        return BuildSensorProperties(request, path, thermalTyping);
    });
}

void PublishedObjects::CreateThermalProbe(const SensorInsertRequest& request) {
    const std::uint32_t heard = FruEventsOf(request.slot);
    CreateSensor(thermalProbeObjects, request);
    if (FruEventsOf(request.slot) != heard) {
        // The event found no sensor to retype, and the sensor may have its type from before it.
        UpdateSensorType(request.slot);
    }
}

void PublishedObjects::InsertStateSensor(const StateSensorRequest& request) {
    createDbusObj(stateSensorObjects, request.deviceLdid, request.statePath,
                  [&](const std::string& path) {
                      PropertyBags bags;
                      Bag<bindings::StateSensor>(bags) = BuildStateSensorProperties(request, path);
                      return bags;
                  });
}

} // namespace vantric
