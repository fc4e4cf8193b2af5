/** The walk through the tree that publishes what hangs on it. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "modeling/paths.hpp"
#include "vocabulary/entity_types.hpp"

#include <vector>

namespace vantric {

namespace {

/** False for the second occurrence of an entity: the container node below its contained node. */
bool IsFirstOccurrence(const PDRTree& node, const PDRTree& root) {
    return node.entityType == root.entityType ||
           (node.parent != nullptr && node.parent->entityType != node.entityType);
}

} // namespace

void Modeling::WalkTree() {
    std::vector<PDRTree*> toVisit;
    if (tree.Root() != nullptr) {
        toVisit.push_back(tree.Root());
    }
    while (!toVisit.empty()) {
        PDRTree& node = *toVisit.back();
        toVisit.pop_back();
        if (IsFirstOccurrence(node, *tree.Root())) {
            if (IsPort(node.entityType)) {
                ++portCount;
            }
            UpdateDbus(node);
        }
        for (auto child = node.children.rbegin(); child != node.children.rend(); ++child) {
            toVisit.push_back(child->get());
        }
    }
}

std::string Modeling::EntityPath(const PDRTree& node) const {
    // A container has the path of the contained node that it continues.
    return NodePath(tree.FindNode({node.entityContainerID, node.entityType, node.entityInstance}));
}

std::string Modeling::InventoryPath(const PDRTree& node) const {
    return InventoryRoot() + (node.entityType == ENTITY_COMMUNICATION_CHANNEL
                                  ? "/" + EntityWord(node.entityType)
                                  : EntityPath(node));
}

void Modeling::UpdateDbus(PDRTree& node) {
    if (EntityWord(node.entityType).empty()) {
        return;
    }
    if (node.logicalConnectionTo != nullptr) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "LogicalConnectionTo\n");
        VANTRIC_LOG(LOG_LEVEL_TRACE, "%s\n", EntityPath(*node.logicalConnectionTo).c_str());
    }
    if (node.sensors.empty() && node.stateSensors.empty()) {
        return;
    }
    std::string path = InventoryPath(node);
    if (path.size() > longestPath) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Too deep for a path: EntityType: %d\n", node.entityType);
        return;
    }
    for (const auto& sensor : node.sensors) {
        NumericSensorHandler(*sensor, node, path);
    }
    path = InventoryPath(node); // a connector may have got its number just now
    for (const auto& sensor : node.stateSensors) {
        if (EntityWord(sensor->entityType).empty()) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid/Not supported EntityType: %d\n",
                        sensor->entityType);
            continue;
        }
        StateSensorHandler(*sensor, path);
    }
}

} // namespace vantric
