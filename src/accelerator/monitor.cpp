// SPDX-License-Identifier: Apache-2.0
/** The monitor cycle of an accelerator, and the groups in which its sensors are read. */
#include "accelerator/accelerator.hpp"

#include "common/pause.hpp"
#include "common/status.hpp"

#include <algorithm>
#include <array>

namespace vantric {

namespace {

// Sensors that are read more often than the others; sorted.
constexpr std::array<std::uint16_t, 1> fastSensors{405};
constexpr std::array<std::uint16_t, 16> mediumSensors{30,  31,  32,  45,  46,  47,  48,  375,
                                                      376, 377, 378, 406, 407, 408, 409, 410};

} // namespace

void Accelerator::GroupSensors() {
    for (const auto& endpoint : cmds) {
        numericSensorIds = endpoint->GetAllSensorIDs();
    }
    fastSensorIds.clear();
    mediumSensorIds.clear();
    slowSensorIds.clear();
    for (const std::uint16_t id : numericSensorIds) {
        if (std::ranges::binary_search(fastSensors, id)) {
            fastSensorIds.push_back(id);
        } else if (std::ranges::binary_search(mediumSensors, id)) {
            mediumSensorIds.push_back(id);
        } else {
            slowSensorIds.push_back(id);
        }
    }
    fastSensorsReadAt = mediumSensorsReadAt = slowSensorsReadAt = Now();
}

VantricStatus Accelerator::MonitorTheDevice() {
    {
        const auto lock = endpoints.BeginWork();
        // The same for all endpoints: counted by endpoint, some would never have their turn.
        const States states = stateSensorCycles.IsDue() ? States::DUE : States::NOT_DUE;
        for (const auto& endpoint : cmds) {
            const VantricStatus status = MonitorEndpoint(*endpoint, states);
            if (status != STATUS_SUCCESS) {
                return FailedCycle(status);
            }
            if (endpoint == cmds.front()) { // from here on the cycle counts, whatever follows
                if (states == States::DUE) {
                    stateSensorCycles.Restart();
                }
                stateSensorCycles.Count();
            }
        }
    }
    return PauseAfterCycle();
}

VantricStatus Accelerator::MonitorEndpoint(PLDMCmds& endpoint, States states) {
    if (monitorCycles.IsDue()) {
        monitorCycles.Restart();
        RefreshFWVersion(endpoint, FirmwareUse::PUBLISH);
        if (ReadChangedRepository(endpoint)) {
            FilterSensors();
            ModelAccelerator();
        }
    }
    ReadingMap readings;
    const VantricStatus status =
        isAmdUbb ? endpoint.GetAllSensorReading(readings) : ReadDueGroups(endpoint, readings);
    PublishReadings(readings, ControllerAt(1));
    // A sensor that the endpoint doesn't know is no reason for another inventory here.
    if (status != STATUS_SUCCESS && status != STATUS_INVALID_OR_CHANGED) {
        return status;
    }
    if (states == States::DUE) {
        RefreshStateSensors(endpoint, ControllerAt(1));
    }
    monitorCycles.Count();
    return STATUS_SUCCESS;
}

VantricStatus Accelerator::ReadDueGroups(PLDMCmds& endpoint, ReadingMap& readings) {
    const TimePoint now = Now();
    VantricStatus status = STATUS_SUCCESS;
    if (now - fastSensorsReadAt >= fastAge) {
        ReadSensorGroup(fastSensorIds, fastSensorsReadAt, endpoint, readings, status);
    }
    if (now - mediumSensorsReadAt >= mediumAge) {
        ReadSensorGroup(mediumSensorIds, mediumSensorsReadAt, endpoint, readings, status);
    }
    if (now - slowSensorsReadAt >= slowAge) {
        ReadSensorGroup(slowSensorIds, slowSensorsReadAt, endpoint, readings, status);
    }
    return status;
}

void Accelerator::ReadSensorGroup(const std::vector<std::uint16_t>& ids, TimePoint& readAt,
                                  PLDMCmds& endpoint, ReadingMap& readings, VantricStatus& status) {
    ReadingMap groupReadings;
    for (const std::uint16_t id : ids) {
        const VantricStatus result = endpoint.GetSensorReading(id, groupReadings);
        if (result == STATUS_DISCOVERY_RUNNING || result == STATUS_NEW_END_POINTS) {
            return; // what was read is dropped, and the group stays due
        }
        if (result != STATUS_SUCCESS) {
            status = result;
        }
    }
    readings.merge(groupReadings);
    readAt = Now();
}

} // namespace vantric
