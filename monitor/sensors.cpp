// SPDX-License-Identifier: Apache-2.0
#include "sensors.hpp"

#include "interface_names.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace monitor {

namespace {

/** Stands for a reading that isn't there. */
constexpr double noReading = 2147483647.0;

/** What a state sensor shows for both words of a member until it has been read. */
constexpr std::string_view notReadYet = "Unavailable";

constexpr std::string_view healthSet = "Health State";

/** Sets that tell of a fault with each state but this one. */
constexpr std::string_view goodState = "Normal";
constexpr std::array<std::string_view, 9> faultSets{
    "Predictive Condition",
    "Operational Fault Status",
    "Operational Connection Status",
    "Performance",
    "Thermal Trip",
    "Bus Error Status",
    "Power Supply State",
    "Memory Error Status",
    "Error Detection Status",
};
constexpr std::string_view tripped = "Thermal Trip";

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/** The path from the sensor's id on: what a sensor without a name is called. */
std::string IdText(const std::string& path) {
    const std::size_t id = path.rfind("sensorid_");
    return path.substr(id == std::string::npos ? path.rfind('/') + 1 : id);
}

Limits ReadLimits(const Object& object, const char* interface, const std::string& level) {
    return {.low = object.Number(interface, level + "Low"),
            .high = object.Number(interface, level + "High"),
            .alarmLow = object.IsSet(interface, level + "AlarmLow"),
            .alarmHigh = object.IsSet(interface, level + "AlarmHigh")};
}

std::optional<double> Given(std::int32_t limit) {
    return limit == 0 ? std::nullopt : std::optional<double>(limit);
}

void ReadLimits(const Object& object, Sensor& sensor) {
    if (object.Has(warningInterface)) {
        sensor.warning = ReadLimits(object, warningInterface, "Warning");
        sensor.critical = ReadLimits(object, criticalInterface, "Critical");
    } else if (const auto* all = object.Get<ProbeThresholds>(probeInterface, "ProbeThresholds")) {
        const auto& [upperFatal, upperCritical, upperWarning, lowerWarning, lowerCritical,
                     lowerFatal] = *all;
        sensor.warning = {.low = Given(lowerWarning), .high = Given(upperWarning)};
        sensor.critical = {.low = Given(lowerCritical), .high = Given(upperCritical)};
    }
}

/** Reads the value interface, whose object has the time of a failure too. */
void ReadValue(const Object& object, Sensor& sensor) {
    sensor.value = object.Number(valueInterface, "Value");
    if (!sensor.value) {
        sensor.reading = Reading::NONE;
    } else if (sensor.value == noReading ||
               object.Number(thermalInterface, "FailedTimestamp").value_or(0) != 0) {
        sensor.reading = Reading::FAILED;
        sensor.value.reset();
    } else if (object.IsSet(availabilityInterface, "Available")) {
        sensor.reading = Reading::OK;
    } else if (sensor.value == 0) {
        sensor.reading = Reading::NOT_READ;
        sensor.value.reset();
    } else {
        sensor.reading = Reading::UNAVAILABLE;
    }
}

/** Reads the probe interface of an object that has no other. */
void ReadProbe(const Object& object, Sensor& sensor) {
    constexpr double good = 2;
    sensor.value = object.Number(probeInterface, "ProbeReading");
    if (!sensor.value || sensor.value == noReading) {
        sensor.reading = Reading::NONE;
        sensor.value.reset();
    } else {
        sensor.reading = object.Number(probeInterface, "ProbeStatus") == good
                             ? Reading::OK
                             : Reading::UNAVAILABLE;
    }
}

std::string UnitText(std::string_view path) {
    return Contains(path, "/temperature/") ? "C" : Contains(path, "/power/") ? "W" : "";
}

bool Crossed(const std::optional<double>& value, const Limits& limits) {
    return limits.alarmLow || limits.alarmHigh ||
           (value && limits.high && *value >= *limits.high) ||
           (value && limits.low && *value <= *limits.low);
}

/** Before the first reading, the alarms that stand are those of a value that was never read. */
Severity SensorSeverity(const Sensor& sensor) {
    if (sensor.reading == Reading::NOT_READ || sensor.reading == Reading::NONE) {
        return Severity::OK;
    }
    if (Crossed(sensor.value, sensor.critical)) {
        return Severity::CRITICAL;
    }
    const bool warned = Crossed(sensor.value, sensor.warning);
    return warned || sensor.reading == Reading::FAILED ? Severity::WARNING : Severity::OK;
}

Severity StateSeverity(std::string_view set, std::string_view state) {
    if (state.empty() || state == goodState) {
        return Severity::OK;
    }
    if (set == healthSet) {
        return Contains(state, "Non-Critical") ? Severity::WARNING
               : Contains(state, "Fatal")      ? Severity::FATAL
                                               : Severity::CRITICAL;
    }
    if (std::ranges::find(faultSets, set) == faultSets.end()) {
        return Severity::OK;
    }
    return state == tripped ? Severity::CRITICAL : Severity::WARNING;
}

} // namespace

Sensor ReadSensor(const std::string& path, const Object& object) {
    Sensor sensor;
    sensor.path = path;
    sensor.name = object.Text(probeInterface, "ProbeLocation");
    if (sensor.name.empty()) {
        sensor.name = IdText(path);
    }
    const auto* associations = object.Get<Associations>(associationInterface, "Associations");
    if (associations != nullptr && !associations->empty()) {
        sensor.part = std::get<1>(associations->front());
    }
    sensor.unit = UnitText(path);
    object.Has(valueInterface) ? ReadValue(object, sensor) : ReadProbe(object, sensor);
    ReadLimits(object, sensor);
    sensor.severity = SensorSeverity(sensor);
    return sensor;
}

std::vector<State> ReadStates(const std::string& path, const Object& object) {
    const auto* details = object.Get<StateDetails>(stateInterface, "StateSensorDetails");
    State row;
    row.path = path;
    row.name = IdText(path);
    if (details == nullptr || details->empty()) {
        return {row};
    }
    std::vector<State> states;
    for (const auto& [member, words] : *details) {
        row.name = member;
        std::tie(row.set, row.state) = words;
        row.read = row.state != notReadYet;
        if (row.set == notReadYet) {
            row.set.clear();
        }
        if (!row.read) {
            row.state.clear();
        }
        row.severity = StateSeverity(row.set, row.state);
        states.push_back(row);
    }
    return states;
}

} // namespace monitor
