#include "modeling/entity_tree.hpp"

#include <new>
#include <utility>

namespace vantric {

namespace {

/** Lengths of shortcuts are those of a skew-binary number system: from any node, every ancestor is
 *  a logarithmic number of steps away. */
const PDRTree* ShortcutFrom(const PDRTree& parent) {
    const PDRTree& near = *parent.position.shortcut;
    const PDRTree& far = *near.position.shortcut;
    const bool equalSteps =
        parent.position.depth - near.position.depth == near.position.depth - far.position.depth;
    return equalSteps ? &far : &parent;
}

TreePosition LastPositionUnder(const PDRTree& parent) {
    return {.depth = parent.position.depth + 1,
            .sibling = static_cast<std::uint32_t>(parent.children.size()),
            .shortcut = ShortcutFrom(parent)};
}

/** Makes the next emplace_back one that can't fail. */
void MakeRoom(std::vector<std::unique_ptr<PDRTree>>& children) {
    if (children.size() == children.capacity()) {
        children.reserve(children.size() * 2 + 1);
    }
}

} // namespace

bool EntityTree::SearchOrder::operator()(const PDRTree* left, const PDRTree* right) const {
    const auto order = left->Key() <=> right->Key();
    return order != 0 ? order < 0 : Precedes(*left, *right);
}

bool EntityTree::SearchOrder::operator()(const PDRTree* node, const EntityKey& key) const {
    return node->Key() < key;
}

bool EntityTree::SearchOrder::operator()(const EntityKey& key, const PDRTree* node) const {
    return key < node->Key();
}

PDRTree* EntityTree::FindNode(const EntityKey& key) const {
    const auto found = nodes.lower_bound(key);
    return found != nodes.end() && (*found)->Key() == key ? *found : nullptr;
}

PDRTree* EntityTree::FindNodeOrRoot(const EntityKey& key) const {
    PDRTree* found = FindNode(key);
    return found != nullptr ? found : Root();
}

PDRTree* EntityTree::Add(PDRTree* parent, const EntityKey& key, std::uint16_t entityContainerID) {
    try {
        auto node = std::make_unique<PDRTree>();
        node->containerID = key.containerID;
        node->entityType = key.entityType;
        node->entityInstance = key.entityInstance;
        node->entityContainerID = entityContainerID;
        node->parent = parent;
        if (parent != nullptr) {
            node->position = LastPositionUnder(*parent);
            MakeRoom(parent->children);
        } else {
            node->position.shortcut = node.get();
        }
        PDRTree* added = node.get();
        nodes.insert(added);
        auto& owner = parent != nullptr ? parent->children.emplace_back() : root;
        owner = std::move(node);
        return added;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void EntityTree::Renumber(PDRTree& node, std::uint16_t entityInstance) {
    auto entry = nodes.extract(&node);
    node.entityInstance = entityInstance;
    nodes.insert(std::move(entry));
}

void EntityTree::FreeTree() {
    nodes.clear();
    root.reset();
}

} // namespace vantric
