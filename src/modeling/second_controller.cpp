// SPDX-License-Identifier: Apache-2.0
#include "modeling/second_controller.hpp"

#include "modeling/paths.hpp"
#include "vocabulary/entity_types.hpp"
#include "vocabulary/reading.hpp"

namespace vantric {

std::string ControllerPiece(const Controller& controller) {
    return "/" + EntityName(ENTITY_NETWORK_CONTROLLER, controller.IsSecond() ? 2 : 1);
}

std::uint16_t InstanceOnController(const __Sensor& sensor, const Controller& controller) {
    const bool second = controller.IsSecond() && sensor.entityType == ENTITY_NETWORK_CONTROLLER;
    return static_cast<std::uint16_t>(sensor.entityInstance + (second ? 1 : 0));
}

std::string ReadingKey(ControllerTag tag, std::uint16_t sensorId) {
    return tag == CONTROLLER_2 ? TaggedId(tag, sensorId) : SensorTail(tag, sensorId);
}

void SecondControllerNumbers::Number(SensorInsertRequest& request) {
    const std::uint16_t entityType = request.sensor.entityType;
    std::uint16_t& instance = request.sensor.entityInstance;
    if (entityType != ENTITY_NETWORK_CONTROLLER) {
        if (request.sensor.baseUnit == BASE_UNIT_DEGREES_C) {
            instance = ++tempCount;
        } else if (request.sensor.baseUnit == BASE_UNIT_WATTS) {
            instance = ++powerCount;
        }
    }
    const std::string& word = EntityWord(entityType);
    if (!word.empty()) {
        request.entityName = IsConnector(entityType) ? EntityName(ENTITY_ETHERNET, instance)
                                                     : word + std::to_string(instance);
    }
}

std::string SecondControllerNumbers::Number(StateSensorRequest& request) {
    const std::uint16_t entityType = request.entityType;
    if (entityType == ENTITY_NETWORK_CONTROLLER) {
        return {};
    }
    request.entityInstance += portCount;
    if (IsPort(entityType)) {
        return "/" + EntityName(entityType, request.entityInstance);
    }
    if (IsConnector(entityType)) {
        request.entityInstance = ++connectorCount;
        return "/" + EntityName(ENTITY_CONNECTOR, connectorCount) + "/" + EntityName(entityType, 1);
    }
    return {};
}

} // namespace vantric
