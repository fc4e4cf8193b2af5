// SPDX-License-Identifier: Apache-2.0
#include "modeling/paths.hpp"

#include "modeling/second_controller.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/entity_types.hpp"
#include "vocabulary/reading.hpp"
#include "vocabulary/vocabulary.hpp"

namespace vantric {

namespace {

bool IsCard(std::uint16_t entityType) {
    return entityType == ENTITY_ADD_IN_CARD || entityType == ENTITY_SYSTEM_MANAGEMENT_MODULE;
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string NodePath(const PDRTree* node) {
    if (node == nullptr || node->parent == nullptr || IsCard(node->entityType)) {
        return {};
    }
    std::string path = NodePath(node->parent);
    if (!EntityWord(node->entityType).empty() && node->parent->entityType != node->entityType) {
        path += "/" + EntityName(node->entityType, node->entityInstance);
    }
    return path;
}

} // namespace

const std::string& EntityWord(std::uint16_t entityType) {
    static const std::string none;
    const auto row = entityWords.find(entityType);
    return row != entityWords.end() ? row->second : none;
}

std::string EntityName(std::uint16_t entityType, std::uint16_t instance) {
    return EntityWord(entityType) + "_" + std::to_string(instance);
}

std::string EntityPath(const EntityTree& tree, const PDRTree& node) {
    return NodePath(tree.FindNode({node.entityContainerID, node.entityType, node.entityInstance}));
}

std::string NodePiece(const EntityTree& tree, const PDRTree& node) {
    return node.entityType == ENTITY_COMMUNICATION_CHANNEL ? "/" + EntityWord(node.entityType)
                                                           : EntityPath(tree, node);
}

std::string PieceWithoutNode(std::uint16_t entityType, const Controller& controller) {
    // The outermost connector types have always had the longer path.
    const bool underController =
        entityType <= ENTITY_RJ45 || entityType >= ENTITY_UNKNOWN_CONNECTOR;
    return underController ? ControllerPiece(controller) : "";
}

std::uint8_t ConnectorNumber(std::string_view path) {
    constexpr std::string_view connector = "connector_";
    const auto found = path.find(connector);
    if (found == std::string_view::npos) {
        return 0;
    }
    std::uint8_t number = 0;
    for (auto at = found + connector.size(); at < path.size() && IsDigit(path[at]); ++at) {
        number = static_cast<std::uint8_t>(number * 10 + (path[at] - '0'));
    }
    return number;
}

std::string SensorPath(const __Sensor& sensor, std::string_view ldid, ControllerTag tag) {
    std::string path(sensor.baseUnit == BASE_UNIT_WATTS ? powerRoot : temperatureRoot);
    path += '/';
    path += ldid;
    return path + SensorTail(tag, sensor.sensorId);
}

} // namespace vantric
