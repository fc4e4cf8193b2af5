// SPDX-License-Identifier: Apache-2.0
/** Readings and states on their way to the objects of sensors. */
#include "dbus_handler/initial_properties.hpp"
#include "dbus_handler/published_objects.hpp"

#include <cmath>
#include <ctime>
#include <limits>

namespace vantric {

namespace {

bool Failed(double value) {
    return value == readingUnavailable;
}

/** The value as a probe shows it: cut toward zero, and held within 32 bits. Zero and what is no
 *  number show as unavailable. */
std::int32_t ProbeReadingOf(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (value == 0 || std::isnan(value)) {
        return readingUnavailable;
    }
    if (value >= Limits::max()) {
        return Limits::max();
    }
    if (value <= Limits::min()) {
        return Limits::min();
    }
    return static_cast<std::int32_t>(value);
}

void WriteProbe(ProbeObject& object, double value) {
    const bool good = value > 0 && !Failed(value);
    object.probeStatus(good ? PROBE_STATUS_GOOD : PROBE_STATUS_NONE, false);
    object.objectStatus(good ? OBJECT_READY : OBJECT_NOT_READY, false);
    object.probeReading(ProbeReadingOf(value), false);
}

/** An alarm at a high threshold is raised at creation only; a reading can end it. */
bool HighAlarm(bool present, double threshold, double value) {
    return present && threshold != 0 && value > threshold;
}

void WriteThermal(OpenBMCInterfaces& object, bindings::ThermalSensor& thermal, double value) {
    const auto now = static_cast<std::uint32_t>(std::time(nullptr));
    thermal.failedTimestamp(Failed(value) ? now : 0);
    object.value(value);
    object.criticalAlarmHigh(HighAlarm(object.criticalAlarmHigh(), object.criticalHigh(), value));
    object.warningAlarmHigh(HighAlarm(object.warningAlarmHigh(), object.warningHigh(), value));
    object.available(value > 0);
    object.functional(value > 0);
}

} // namespace

void PublishedObjects::SetSensorValue(const SensorValueRequest& request) {
    const auto& [value, ldid, pathText, slot, kind, controller] = request;
    const std::lock_guard lock(objectsMutex);
    if (kind == SENSOR_KIND_THERMAL_PROBE) {
        if (const auto object = FindObject(thermalProbeObjects, ldid, pathText)) {
            WriteProbe(*object, value);
            WriteThermal(*object, *object, value);
        }
    } else if (kind == SENSOR_KIND_THERMAL) {
        if (const auto object = FindObject(thermalObjects, ldid, pathText)) {
            WriteThermal(*object, *object, value);
        }
    } else if (kind == SENSOR_KIND_PROBE) {
        if (const auto object = FindObject(probeObjects, ldid, pathText)) {
            WriteProbe(*object, value);
        }
    }
}

void PublishedObjects::SetStateSensorValue(const StateSensorRequest& request) {
    if (const auto object = FindObject(stateSensorObjects, request.deviceLdid, request.searchKey)) {
        object->stateSensorDetails(BuildStateDetails(request, request.memberNames.size()));
    }
}

} // namespace vantric
