/** From Entity Association PDRs to the tree. */
#pragma once

#include "modeling/entity_tree.hpp"

#include <memory>
#include <vector>

namespace vantric {

/** Builds up the tree from associations, in their order (DSP0248, entity association).
 *
 * A physical association hangs its container under the node that the container itself names, or
 * under the root if there is no such node, and its contained entities under the container. So an
 * entity that is contained in one association and the container of another stands twice, the second
 * time as a child of the first. A logical association makes no node: it tells which port a cable
 * leads to.
 *
 * What can't be made for want of memory is logged. Without a contained entity the rest goes on.
 * @returns false if a container couldn't be made: the tree then holds what came before. */
bool BuildTree(EntityTree& tree, const std::vector<std::shared_ptr<EAPDR>>& associations);

} // namespace vantric
