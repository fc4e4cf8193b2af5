/** Names of numeric sensors, and the posts that create their objects. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "modeling/paths.hpp"
#include "modeling/reduced_sensor.hpp"
#include "modeling/virtual_board.hpp"
#include "vocabulary/entity_types.hpp"

#include <utility>

namespace vantric {

namespace {

/** The entity's name for a sensor that has no node. */
std::string NameWithoutNode(const __Sensor& sensor, bool flat, std::uint8_t controller) {
    const std::string& word = EntityWord(sensor.entityType);
    if (flat || word.empty()) {
        return "networkcontroller";
    }
    const std::string instance = std::to_string(sensor.entityInstance);
    return IsConnector(sensor.entityType) && controller == 2 ? "ethernet_" + instance
                                                             : word + instance;
}

} // namespace

void Modeling::AttachNumericSensors(const NumericSensors& sensors, bool flat,
                                    std::uint8_t controller) {
    powerCount = portCount;
    tempCount = portCount;
    for (const auto& record : sensors) {
        __Sensor sensor = ReduceSensor(*record);
        if (flat || controller == 2) {
            if (flat) {
                sensor.entityInstance = 0;
            }
            UpdateDbus(std::move(sensor), flat, controller);
            continue;
        }
        PDRTree* node = tree.FindNodeOrRoot(
            {record->containerID, record->entityType, record->entityInstanceNumber});
        if (node != nullptr) {
            node->sensors.push_back(std::make_unique<__Sensor>(std::move(sensor)));
        }
    }
}

void Modeling::NumericSensorHandler(const __Sensor& sensor, PDRTree& node,
                                    const std::string& inventoryPath) {
    if (EntityWord(sensor.entityType).empty()) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid/Not supported EntityType: %d\n", sensor.entityType);
        return;
    }
    if (IsVirtualBoard(device.identity)) {
        UbbNumericSensorHandler(sensor, static_cast<std::uint8_t>(node.entityType),
                                static_cast<std::uint8_t>(node.entityInstance));
        return;
    }
    SensorPlace place{.slot = device.slot,
                      .sensorPath = SensorPath(sensor, device.ldid, Tag(1)),
                      .resolvedLdid = {},
                      .inventoryPath = inventoryPath,
                      .name =
                          EntityWord(node.entityType) + "_" + std::to_string(node.entityInstance)};
    const std::uint8_t connector = ConnectorNumber(inventoryPath);
    if (IsConnector(sensor.entityType) && connector != 0) {
        tree.Renumber(node, connector);
        place.name = "ethernet_" + std::to_string(connector);
    }
    UpdateDbusForNumericSensor(sensor, place, static_cast<std::uint8_t>(node.entityInstance));
}

void Modeling::UbbNumericSensorHandler(const __Sensor& sensor, std::uint8_t entityType,
                                       std::uint8_t instance) {
    std::string name = "add_in_card1";
    if (const std::string& word = EntityWord(entityType); !word.empty()) {
        name = instance != 0 ? word + "_" + std::to_string(instance) : word;
    }
    if (sensor.sensorId == sharedSensorId) {
        for (auto slot = firstAcceleratorSlot; slot <= lastAcceleratorSlot; ++slot) {
            SensorPlace place = SharedSensorPlace(slot);
            place.name = name;
            UpdateDbusForNumericSensor(sensor, place, instance);
        }
        return;
    }
    SensorPlace place{.slot = 0,
                      .sensorPath = SensorPath(sensor, device.ldid, CONTROLLER_UNTOLD),
                      .resolvedLdid = {},
                      .inventoryPath = {},
                      .name = name};
    if (ResolveVirtualSensor(sensor, place)) {
        UpdateDbusForNumericSensor(sensor, place, instance);
    }
}

void Modeling::UpdateDbus(__Sensor sensor, bool flat, std::uint8_t controller) {
    if (device.multipleControllers && controller == 2 &&
        sensor.entityType == ENTITY_NETWORK_CONTROLLER) {
        ++sensor.entityInstance;
    }
    if (!flat && sensor.entityType != ENTITY_NETWORK_CONTROLLER) {
        if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
            sensor.entityInstance = ++tempCount;
        } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
            sensor.entityInstance = ++powerCount;
        }
    }
    const SensorPlace place{.slot = device.slot,
                            .sensorPath = SensorPath(sensor, device.ldid, Tag(controller)),
                            .resolvedLdid = {},
                            .inventoryPath = InventoryRoot() + ControllerPiece(controller),
                            .name = NameWithoutNode(sensor, flat, controller)};
    PostNumericSensor(sensor, place, sensor.entityInstance);
}

void Modeling::UpdateDbusForNumericSensor(const __Sensor& sensor, const SensorPlace& place,
                                          std::uint8_t instance) {
    PostNumericSensor(sensor, place, instance);
}

void Modeling::PostNumericSensor(const __Sensor& sensor, const SensorPlace& place,
                                 std::uint16_t instance) {
    SensorInsertRequest request;
    request.sensor = sensor;
    request.sensor.entityInstance = instance;
    request.sensor.thresholdReadError = 0;
    request.objectPath = place.sensorPath;
    request.deviceLdid = device.ldid;
    request.inventoryPath = place.inventoryPath;
    request.entityName = place.name;
    request.resolvedLdid = place.resolvedLdid;
    request.slot = place.slot;
    request.identity = device.identity;
    request.cpuAffinity = device.cpuAffinity;
    publisher.InsertSensor(std::move(request)).LogFailure(LOG_LEVEL_TRACE);
}

} // namespace vantric
