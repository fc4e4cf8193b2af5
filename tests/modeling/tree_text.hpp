/** A tree as text, and a search that needs no index. Both for small trees. */
#pragma once

#include "modeling/entity_tree.hpp"

#include <string>

namespace vantric::test {

/** "container.type.instance" with the children in brackets behind it. */
inline std::string Text(const PDRTree* node) {
    if (node == nullptr) {
        return "none";
    }
    std::string text = std::to_string(node->containerID) + "." + std::to_string(node->entityType) +
                       "." + std::to_string(node->entityInstance);
    for (const auto& child : node->children) {
        text += (child == node->children.front() ? "[" : " ") + Text(child.get());
    }
    return node->children.empty() ? text : text + "]";
}

/** The first match of a plain depth-first walk. */
inline PDRTree* FirstMatch(PDRTree* node, const EntityKey& key) {
    if (node == nullptr || node->Key() == key) {
        return node;
    }
    for (const auto& child : node->children) {
        if (PDRTree* found = FirstMatch(child.get(), key)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace vantric::test
