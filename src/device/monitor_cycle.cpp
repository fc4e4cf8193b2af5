// SPDX-License-Identifier: Apache-2.0
/** The pieces of a monitor cycle that the classes of devices share. */
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/status.hpp"

namespace vantric {

bool Device::ReadChangedRepository(PLDMCmds& endpoint) {
    constexpr std::uint8_t unforcedRead = 0;
    return endpoint.GetPDRRepositoryInfo(unforcedRead) == STATUS_INVALID_OR_CHANGED;
}

void Device::RefreshStateSensors(PLDMCmds& endpoint, const Controller& controller) {
    StateChangeMap changes;
    endpoint.GetStateSensorReading(changes); // what changed is good, whatever else failed
    modeling->UpdateStateSensorValue(changes, controller);
}

void Device::PublishReadings(const ReadingMap& readings, const Controller& controller) {
    for (const auto& [sensorId, reading] : readings) {
        const auto& [sensorKind, value] = reading;
        modeling->UpdateSensorTempValue(sensorId, value, sensorKind, controller);
    }
}

VantricStatus Device::FailedCycle(VantricStatus status) const {
    VANTRIC_LOG(LOG_LEVEL_ERROR, "Monitor failed for slot %d and error status = %d\n", slotNumber,
                status);
    return status;
}

VantricStatus Device::PauseAfterCycle() {
    Pause(cyclePause);
    return STATUS_SUCCESS;
}

} // namespace vantric
