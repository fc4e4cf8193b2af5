#include "modeling/pdr_tree.hpp"

#include <algorithm>

namespace vantric {

namespace {

const PDRTree* AncestorAt(const PDRTree* node, std::uint32_t depth) {
    while (node->position.depth > depth) {
        const PDRTree* shortcut = node->position.shortcut;
        node = shortcut->position.depth >= depth ? shortcut : node->parent;
    }
    return node;
}

} // namespace

PDRTree::~PDRTree() {
    // A device decides how deep its tree is, so the stack must not: each node goes when it has no
    // children any more.
    PDRTree* node = this;
    while (node != this || !node->children.empty()) {
        if (!node->children.empty()) {
            node = node->children.back().get();
        } else {
            node = node->parent;
            node->children.pop_back();
        }
    }
}

bool Precedes(const PDRTree& left, const PDRTree& right) {
    const std::uint32_t depth = std::min(left.position.depth, right.position.depth);
    const PDRTree* leftBranch = AncestorAt(&left, depth);
    const PDRTree* rightBranch = AncestorAt(&right, depth);
    if (leftBranch == rightBranch) {
        return left.position.depth < right.position.depth;
    }
    while (leftBranch->parent != rightBranch->parent) {
        const bool farApart = leftBranch->position.shortcut != rightBranch->position.shortcut;
        leftBranch = farApart ? leftBranch->position.shortcut : leftBranch->parent;
        rightBranch = farApart ? rightBranch->position.shortcut : rightBranch->parent;
    }
    return leftBranch->position.sibling < rightBranch->position.sibling;
}

} // namespace vantric
