// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"

namespace simulator {

std::vector<Pdr> EncodeDescribed(const TerminusDescription& terminus) {
    std::vector<Pdr> records;
    for (const auto& locator : terminus.locators) {
        records.push_back(EncodeLocator(locator));
    }
    for (const auto& association : terminus.entities.associations) {
        records.push_back(EncodeAssociation(association));
    }
    for (const auto& sensor : terminus.numericSensors) {
        records.push_back(EncodeNumericSensor(sensor));
        if (!sensor.names.empty() && sensor.form != SensorForm::Compact) {
            records.push_back(EncodeNames(sensor.id, {sensor.names}));
        }
    }
    for (const auto& sensor : terminus.stateSensors) {
        records.push_back(EncodeStateSensor(sensor));
        if (!sensor.members.empty() && !sensor.members.front().names.empty()) {
            std::vector<std::vector<LocalName>> names;
            for (const auto& member : sensor.members) {
                names.push_back(member.names);
            }
            records.push_back(EncodeNames(sensor.id, names));
        }
    }
    for (const auto& effector : terminus.numericEffectors) {
        records.push_back(EncodeNumericEffector(effector));
        if (effector.initial) {
            records.push_back(EncodeNumericEffectorInitialization(effector));
        }
    }
    for (const auto& effector : terminus.stateEffectors) {
        records.push_back(EncodeStateEffector(effector));
        if (effector.initial) {
            records.push_back(EncodeStateEffectorInitialization(effector));
        }
    }
    return records;
}

} // namespace simulator
