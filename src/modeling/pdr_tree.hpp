/** One occurrence of an entity in the tree that a device's Entity Association PDRs tell of. */
#pragma once

#include "records/extracted_data.hpp"
#include "records/sensor.hpp"

#include <compare>
#include <cstdint>
#include <memory>
#include <vector>

namespace vantric {

struct PDRTree;

/** What a search goes by. Not unique in a tree: the first node of a depth-first walk counts. */
struct EntityKey {
    std::uint16_t containerID = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstance = 0;

    auto operator<=>(const EntityKey&) const = default;
};

/** Where a node stands, so that two nodes can be put in order without a walk. EntityTree's own. */
struct TreePosition {
    std::uint32_t depth = 0;           ///< 0 at the root
    std::uint32_t sibling = 0;         ///< index among the parent's children
    const PDRTree* shortcut = nullptr; ///< some ancestor; the root's is the root
};

/** A node. Only EntityTree makes nodes and changes their key; sensors are anybody's to hang on. */
struct PDRTree {
    std::uint16_t containerID = 0; ///< of the association that made the node
    std::uint16_t entityType = 0;
    std::uint16_t entityInstance = 0;
    std::uint16_t entityContainerID = 0;                      ///< as the entity itself names it
    PDRTree* parent = nullptr;                                ///< none at the root
    std::vector<std::unique_ptr<PDRTree>> children;           ///< in order of creation
    PDRTree* logicalConnectionTo = nullptr;                   ///< of a cable: the port it leads to
    std::vector<std::unique_ptr<__Sensor>> sensors;           ///< numeric sensors of the entity
    std::vector<std::shared_ptr<_StateSensors>> stateSensors; ///< shared with the extracted data
    TreePosition position;

    PDRTree() = default;
    /** Frees the children before the node, however deep the tree is. */
    ~PDRTree();
    PDRTree(const PDRTree&) = delete;
    PDRTree& operator=(const PDRTree&) = delete;

    EntityKey Key() const { return {containerID, entityType, entityInstance}; }
};

/** Whether a depth-first walk comes to left before right; both are of one tree. Takes time with the
 *  logarithm of the depth. */
bool Precedes(const PDRTree& left, const PDRTree& right);

} // namespace vantric
