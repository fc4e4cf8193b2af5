// SPDX-License-Identifier: Apache-2.0
/** Readings on their way to the objects. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "modeling/accelerator_board.hpp"
#include "modeling/second_controller.hpp"
#include "vocabulary/vocabulary.hpp"

#include <algorithm>
#include <utility>

namespace vantric {

namespace {

constexpr auto healthState = "Health State";
constexpr std::uint8_t unknownSeverity = 1;

/** What a table has for a key; fallback without a row. */
template <typename Table>
typename Table::mapped_type Look(const Table& table, const typename Table::key_type& key,
                                 typename Table::mapped_type fallback = {}) {
    const auto row = table.find(key);
    return row != table.end() ? row->second : fallback;
}

std::string StateText(const std::string& setName, std::uint8_t state) {
    const auto states = stateValueNames.find(setName);
    return states != stateValueNames.end() ? Look(states->second, state) : "";
}

} // namespace

void Modeling::UpdateSensorTempValue(std::uint16_t sensorId, std::int32_t value,
                                     std::uint8_t sensorKind, const Controller& controller) {
    if (accelerator_board::IsBoard(device.identity) && sensorKind == SENSOR_KIND_THERMAL) {
        UpdateThermalSensorForAllLDIDs(value, controller);
        return;
    }
    SensorValueRequest request;
    request.value = value;
    request.deviceLdid = device.ldid;
    request.pathText = ReadingKey(controller.tag, sensorId);
    request.slot = device.slot;
    request.sensorKind = sensorKind;
    request.controller = controller.number;
    publisher.SetSensorValue(std::move(request))
        .LogFailure(LOG_LEVEL_ERROR, "OneWayChannel_Execute dbusSetSensorValue");
}

void Modeling::UpdateThermalSensorForAllLDIDs(std::int32_t value, const Controller& controller) {
    // All thermal readings of the board are readings of the one shared sensor.
    for (const std::uint8_t slot : accelerator_board::slots) {
        SensorValueRequest request;
        request.value = value;
        request.deviceLdid = device.ldid;
        request.pathText = accelerator_board::SharedSensorKey(slot);
        request.slot = device.slot;
        request.sensorKind = SENSOR_KIND_THERMAL;
        request.controller = controller.number;
        const int result = publisher.SetSensorValue(std::move(request)).ExecRet();
        if (result != 0) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for virtual slot = %d, execRet = %d\n", slot,
                        result);
        }
    }
}

void Modeling::UpdateStateSensorValue(const StateChangeMap& readings,
                                      const Controller& controller) {
    for (const auto& [sensorId, change] : readings) {
        StateSensorRequest request;
        request.slot = device.slot;
        request.controller = controller.number;
        request.memberNames = change.memberNames;
        const std::size_t count = std::min(change.presentStates.size(), change.stateSetIds.size());
        for (std::size_t member = 0; member < count; ++member) {
            std::string setName = Look(stateSetNames, change.stateSetIds[member]);
            std::string text = StateText(setName, change.presentStates[member]);
            if (setName == healthState) {
                UpdateDeviceHealthStatus(text);
            }
            request.stateSetNames.push_back(std::move(setName));
            request.valueTexts.push_back(std::move(text));
        }
        request.deviceLdid = device.ldid;
        request.searchKey = StateSensorTail(controller.tag, sensorId);
        publisher.SetStateSensorValue(std::move(request)).LogFailure(LOG_LEVEL_TRACE);
    }
}

void Modeling::UpdateDeviceHealthStatus(const std::string& text) {
    publisher.UpdateDeviceHealthStatus({device.ldid, Look(healthSeverity, text, unknownSeverity)})
        .LogFailure(LOG_LEVEL_ERROR, "OneWayChannel_Execute dbusSetHealthState");
}

} // namespace vantric
