// SPDX-License-Identifier: Apache-2.0
/** The tree of a device's entities: what a node holds, how associations build it, the searches. */
#pragma once

#include "records/extracted_data.hpp"
#include "records/sensor.hpp"

#include <compare>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace vantric {

/** What a search goes by. Not unique in a tree: the first node of a depth-first walk counts. */
struct EntityKey {
    std::uint16_t containerID = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstance = 0;

    auto operator<=>(const EntityKey&) const = default;
};

/** Where a node stands: for each level below the root, the index among the siblings. A depth-first
 *  walk, children in order, comes to nodes in the order of their places. */
using TreePlace = std::vector<std::uint16_t>;

/** One occurrence of an entity. Only EntityTree makes nodes and changes their key and place;
 * any code may hang sensors on them. */
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
    TreePlace place;

    EntityKey Key() const { return {containerID, entityType, entityInstance}; }
};

/** Owns the nodes of one tree and keeps them findable. A search takes time with the logarithm of
 *  their number. No lock: for one thread. */
class EntityTree {
public:
    /** The root, or nullptr while there is no tree. */
    PDRTree* Root() const { return root.get(); }

    /** The first node with this key in depth-first order, children in order; nullptr if none. */
    PDRTree* FindNode(const EntityKey& key) const;

    /** What FindNode finds, else the root, which may be nullptr. */
    PDRTree* FindNodeOrRoot(const EntityKey& key) const;

    /** Makes a node and hangs it under parent as the last child, or makes it the root where parent
     *  is nullptr and there is no tree yet. Returns nullptr where the tree would grow beyond
     *  limits::entityNodes or limits::entityLevels, and says so once. Throws std::bad_alloc. */
    PDRTree* Add(PDRTree* parent, const EntityKey& key, std::uint16_t entityContainerID);

    /** Gives a node of this tree another instance number, under which it is found from then on. */
    void Renumber(PDRTree& node, std::uint16_t entityInstance);

    /** Frees all nodes with what hangs on them. No tree afterwards. */
    void FreeTree();

private:
    std::unique_ptr<PDRTree> root;
    std::map<std::pair<EntityKey, TreePlace>, PDRTree*> nodes;
    bool toldOfLimit = false;
};

/** Builds up the tree from associations, in their order (DSP0248, entity association).
 *
 * A physical association hangs its container under the node that the container itself names, or
 * under the root if there is no such node, and its contained entities under the container. So an
 * entity that is contained in one association and the container of another stands twice, the second
 * time as a child of the first. A logical association makes no node: it tells which port a cable
 * leads to. What is beyond the limits of the tree is left out.
 *
 * What can't be made for want of memory is logged. Without a contained entity the rest goes on.
 * @returns false if a container couldn't be made: the tree then holds what came before. */
bool BuildTree(EntityTree& tree, const std::vector<std::shared_ptr<EAPDR>>& associations);

} // namespace vantric
