#include "dbus_handler/probe_properties.hpp"

#include "vocabulary/ldid.hpp"

#include <algorithm>
#include <array>

namespace vantric {

namespace {

constexpr std::uint32_t subTypeTemperature = 5;
constexpr std::uint32_t subTypePower = 49;
constexpr std::uint8_t entityAddInCard = 42;
constexpr std::uint8_t entityAccelerator = 11;
constexpr std::uint8_t statusNone = 0;
constexpr std::uint8_t objectNotReady = 6;

/** Entity types whose instance isn't a port, so that it doesn't belong to the target's key. */
constexpr std::array<std::uint16_t, 8> entitiesWithoutPort{144,   148, 149,   68,
                                                           32836, 79,  32917, 24576};

bool Holds(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

/** Which of a device's two controllers the path names; 0 if it names none. */
int ControllerOf(const std::string& path) {
    if (Holds(path, "_sensorid_ctrl1_")) {
        return 1;
    }
    return Holds(path, "_sensorid_ctrl2_") ? 2 : 0;
}

std::string TargetKey(const __Sensor& sensor, const std::string& ldid) {
    const bool port =
        sensor.entityInstance != 0 &&
        std::ranges::find(entitiesWithoutPort, sensor.entityType) == entitiesWithoutPort.end();
    return port ? ldid + "-" + std::to_string(sensor.entityInstance) : ldid;
}

/** The location of a sensor without a name of its own. */
std::string LocationText(const __Sensor& sensor, int controller) {
    std::string text;
    if (controller != 0) {
        text = "Controller " + std::to_string(controller) + " ";
    }
    if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
        text += "Temperature Sensor " + std::to_string(sensor.sensorId);
    } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
        text += "Power Sensor " + std::to_string(sensor.sensorId);
    }
    return text;
}

/** What differs between the probes of accelerators and all others. */
struct Place {
    std::uint8_t entityId;
    std::string key;
    std::string location;
};

Place CardPlace(const __Sensor& sensor, const std::string& target, const std::string& path) {
    const int controller = ControllerOf(path);
    const std::string tag =
        controller == 0 ? "#sensorid_" : "#sensorid_ctrl" + std::to_string(controller) + "_";
    return {entityAddInCard, target + tag + std::to_string(sensor.sensorId),
            sensor.name.empty() ? LocationText(sensor, controller) : sensor.name};
}

Place AcceleratorPlace(const __Sensor& sensor, const std::string& target,
                       SensorNumbering& numbering) {
    Place place{entityAccelerator, target + "#" + sensor.name, sensor.name};
    if (sensor.sensorKind == SENSOR_KIND_THERMAL_PROBE) {
        place.location = "System Board Proc Accel" +
                         std::to_string(numbering.ProcAccelNumberOf(place.key)) + " Temp";
    }
    return place;
}

bool OnAccelerator(const std::string& path) {
    return Holds(path, "/xyz/openbmc_project/sensors/temperature/ProcAccelerator") ||
           Holds(path, "/xyz/openbmc_project/sensors/power/ProcAccelerator");
}

ProbeThresholds ThresholdsOf(const __Sensor& sensor) {
    const auto cut = [](std::int64_t threshold) { return static_cast<std::int32_t>(threshold); };
    return {cut(sensor.upperFatal),   cut(sensor.upperCritical), cut(sensor.upperWarning),
            cut(sensor.lowerWarning), cut(sensor.lowerCritical), cut(sensor.lowerFatal)};
}

} // namespace

PropertyBag<bindings::ProbeObj> BuildProbeProperties(const __Sensor& sensor,
                                                     const std::string& ldid,
                                                     const std::string& path,
                                                     SensorNumbering& numbering) {
    const std::string target = TargetKey(sensor, ldid);
    Place place = OnAccelerator(path) ? AcceleratorPlace(sensor, target, numbering)
                                      : CardPlace(sensor, target, path);
    PropertyBag<bindings::ProbeObj> bag;
    if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
        Put(bag, "SubType", subTypeTemperature);
    } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
        Put(bag, "SubType", subTypePower);
    }
    Put(bag, "EntityID", place.entityId);
    Put(bag, "Key", std::move(place.key));
    Put(bag, "ProbeLocation", std::move(place.location));
    Put(bag, "meta-NonCached", target);
    Put(bag, "TargetDevKey", target);
    Put(bag, "FriendlyLDID", MakeFriendlyLdid(target));
    Put(bag, "SensorNumber", std::uint32_t{sensor.sensorId});
    Put(bag, "ProbeReading", readingUnavailable);
    Put(bag, "UnitModifier", std::uint8_t{0});
    Put(bag, "ProbeStatus", statusNone);
    Put(bag, "ObjectStatus", objectNotReady);
    Put(bag, "ProbeThresholds", ThresholdsOf(sensor));
    return bag;
}

} // namespace vantric
