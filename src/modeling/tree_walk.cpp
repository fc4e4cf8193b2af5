// SPDX-License-Identifier: Apache-2.0
/** A device with a tree: sensors are hung on its nodes, and a walk publishes what hangs there. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "modeling/accelerator_board.hpp"
#include "modeling/paths.hpp"
#include "vocabulary/entity_types.hpp"

#include <utility>

namespace vantric {

namespace {

/** False for the second occurrence of an entity: the container node below its contained node. */
bool IsFirstOccurrence(const PDRTree& node, const PDRTree& root) {
    return node.entityType == root.entityType ||
           (node.parent != nullptr && node.parent->entityType != node.entityType);
}

} // namespace

void Modeling::AttachNumericSensors(const NumericSensors& sensors) {
    for (const auto& record : sensors) {
        tree.FindNodeOrRoot({record->containerID, record->entityType, record->entityInstanceNumber})
            ->sensors.push_back(std::make_unique<__Sensor>(ReduceSensor(*record)));
    }
}

void Modeling::AttachStateSensors(const StateSensors& stateSensors) {
    for (const auto& sensor : stateSensors) {
        tree.FindNodeOrRoot({sensor->containerID, sensor->entityType, sensor->entityInstanceNumber})
            ->stateSensors.push_back(sensor);
    }
}

void Modeling::WalkTree(PDRTree& node, ControllerTag tag) {
    if (IsFirstOccurrence(node, *tree.Root())) {
        if (IsPort(node.entityType)) {
            ++portCount;
        }
        UpdateDbus(node, tag);
    }
    for (const auto& child : node.children) {
        WalkTree(*child, tag);
    }
}

void Modeling::UpdateDbus(PDRTree& node, ControllerTag tag) {
    if (EntityWord(node.entityType).empty()) {
        return;
    }
    if (node.logicalConnectionTo != nullptr) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "LogicalConnectionTo\n");
        VANTRIC_LOG(LOG_LEVEL_TRACE, "%s\n", EntityPath(tree, *node.logicalConnectionTo).c_str());
    }
    if (node.sensors.empty() && node.stateSensors.empty()) {
        return;
    }
    const std::string path = InventoryRoot() + NodePiece(tree, node);
    for (const auto& sensor : node.sensors) {
        NumericSensorHandler(*sensor, node, tag, path);
    }
    // A connector may have got its number just now.
    const std::string numberedPath = InventoryRoot() + NodePiece(tree, node);
    for (const auto& sensor : node.stateSensors) {
        StateSensorHandler(*sensor, tag, numberedPath);
    }
}

void Modeling::NumericSensorHandler(const __Sensor& sensor, PDRTree& node, ControllerTag tag,
                                    const std::string& inventoryPath) {
    if (!LogUnlessSupported(sensor.entityType)) {
        return;
    }
    SensorInsertRequest request = Describe(sensor);
    if (accelerator_board::IsBoard(device.identity)) {
        for (auto& placed : accelerator_board::PlaceNumericSensor(std::move(request), node)) {
            UpdateDbusForNumericSensor(std::move(placed));
        }
        return;
    }
    request.objectPath = SensorPath(sensor, device.ldid, tag);
    request.inventoryPath = inventoryPath;
    request.entityName = EntityName(node.entityType, node.entityInstance);
    const std::uint8_t connector = ConnectorNumber(inventoryPath);
    if (IsConnector(sensor.entityType) && connector != 0) {
        tree.Renumber(node, connector);
        request.entityName = EntityName(ENTITY_ETHERNET, connector);
    }
    request.sensor.entityInstance = static_cast<std::uint8_t>(node.entityInstance);
    UpdateDbusForNumericSensor(std::move(request));
}

void Modeling::StateSensorHandler(_StateSensors& sensor, ControllerTag tag,
                                  const std::string& inventoryPath) {
    if (!LogUnlessSupported(sensor.entityType)) {
        return;
    }
    const std::uint8_t connector = ConnectorNumber(inventoryPath);
    if (IsConnector(sensor.entityType) && connector != 0) {
        sensor.entityInstanceNumber = connector;
    } else if (sensor.entityType == ENTITY_ADD_IN_CARD ||
               sensor.entityType == ENTITY_NETWORK_CONTROLLER) {
        sensor.entityInstanceNumber = 0;
    }
    StateSensorRequest request = Describe(sensor);
    request.statePath = inventoryPath + StateSensorTail(tag, sensor.sensorId);
    request.secondLdid = device.ldid;
    if (accelerator_board::IsBoard(device.identity)) {
        accelerator_board::VirtualStateSensorPath(request);
    }
    UpdateDbusForStateSensor(std::move(request));
}

} // namespace vantric
