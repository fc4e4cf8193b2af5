/** The tree of a device's entities, and the searches in it. */
#pragma once

#include "modeling/pdr_tree.hpp"

#include <cstdint>
#include <memory>
#include <set>

namespace vantric {

/** Owns the nodes of one tree and keeps them findable.
 *
 * A card decides how many nodes there are and how they hang together, so a search takes time with
 * the logarithm of their number, and nothing here recurses. No lock: for one thread. */
class EntityTree {
public:
    /** The root, or nullptr while there is no tree. */
    PDRTree* Root() const { return root.get(); }

    /** The first node with this key in depth-first order, children in order; nullptr if none. */
    PDRTree* FindNode(const EntityKey& key) const;

    /** What FindNode finds, else the root, which may be nullptr. */
    PDRTree* FindNodeOrRoot(const EntityKey& key) const;

    /** Makes a node and hangs it under parent as the last child, or makes it the root where parent
     *  is nullptr and there is no tree yet. Returns nullptr, and changes nothing, when there is no
     *  memory left. */
    PDRTree* Add(PDRTree* parent, const EntityKey& key, std::uint16_t entityContainerID);

    /** Gives a node of this tree another instance number, under which it is found from then on. */
    void Renumber(PDRTree& node, std::uint16_t entityInstance);

    /** Frees all nodes with what hangs on them. No tree afterwards. */
    void FreeTree();

private:
    /** By key, and among nodes of one key depth first. */
    struct SearchOrder {
        using is_transparent = void;
        bool operator()(const PDRTree* left, const PDRTree* right) const;
        bool operator()(const PDRTree* node, const EntityKey& key) const;
        bool operator()(const EntityKey& key, const PDRTree* node) const;
    };

    std::unique_ptr<PDRTree> root;
    std::set<PDRTree*, SearchOrder> nodes;
};

} // namespace vantric
