// SPDX-License-Identifier: Apache-2.0
#include "modeling/entity_tree.hpp"

#include "common/log.hpp"
#include "records/limits.hpp"
#include "vocabulary/entity_types.hpp"

#include <new>

namespace vantric {

namespace {

constexpr std::uint8_t physicalAssociation = 0;

/** The node that an entity has by what it tells of itself. */
EntityKey OwnKey(const CEList& entity) {
    return {entity.ContainedEntityContainerID, entity.ContainedEntityType,
            entity.ContainedEntityInstanceNumber};
}

PDRTree* AddContainer(EntityTree& tree, const EAPDR& association) {
    PDRTree* place = tree.FindNodeOrRoot({association.ContainerEntityContainerID,
                                          association.ContainerEntityType,
                                          association.ContainerEntityInstanceNumber});
    return tree.Add(place,
                    {association.ContainerID, association.ContainerEntityType,
                     association.ContainerEntityInstanceNumber},
                    association.ContainerEntityContainerID);
}

void AddContained(EntityTree& tree, PDRTree& container, const EAPDR& association) {
    for (const auto& entity : association.containedEntities) {
        try {
            tree.Add(&container,
                     {entity->ContainerID, entity->ContainedEntityType,
                      entity->ContainedEntityInstanceNumber},
                     entity->ContainedEntityContainerID);
        } catch (const std::bad_alloc&) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed to create node\n");
        }
    }
}

/** A cable leads to the port that stands before it in the association. */
void ConnectCables(const EntityTree& tree, const EAPDR& association) {
    PDRTree* port = nullptr;
    for (const auto& entity : association.containedEntities) {
        if (entity->ContainedEntityType == ENTITY_ETHERNET) {
            port = tree.FindNode(OwnKey(*entity));
        } else if (entity->ContainedEntityType == ENTITY_CABLE) {
            PDRTree* cable = tree.FindNode(OwnKey(*entity));
            if (cable != nullptr) {
                cable->logicalConnectionTo = port;
            }
        }
    }
}

} // namespace

PDRTree* EntityTree::FindNode(const EntityKey& key) const {
    const auto found = nodes.lower_bound({key, {}});
    return found != nodes.end() && found->first.first == key ? found->second : nullptr;
}

PDRTree* EntityTree::FindNodeOrRoot(const EntityKey& key) const {
    PDRTree* found = FindNode(key);
    return found != nullptr ? found : Root();
}

PDRTree* EntityTree::Add(PDRTree* parent, const EntityKey& key, std::uint16_t entityContainerID) {
    const std::size_t level = parent != nullptr ? parent->place.size() + 1 : 0;
    if (nodes.size() == limits::entityNodes || level == limits::entityLevels) {
        if (!toldOfLimit) {
            toldOfLimit = true;
            VANTRIC_LOG(LOG_LEVEL_WARNING, "No more than %d entities on %d levels are kept\n",
                        static_cast<int>(limits::entityNodes),
                        static_cast<int>(limits::entityLevels));
        }
        return nullptr;
    }
    auto node = std::make_unique<PDRTree>();
    node->containerID = key.containerID;
    node->entityType = key.entityType;
    node->entityInstance = key.entityInstance;
    node->entityContainerID = entityContainerID;
    node->parent = parent;
    if (parent != nullptr) {
        node->place = parent->place;
        node->place.push_back(static_cast<std::uint16_t>(parent->children.size()));
    }
    auto& owner = parent != nullptr ? parent->children.emplace_back() : root;
    owner = std::move(node);
    nodes.emplace(std::pair(key, owner->place), owner.get());
    return owner.get();
}

void EntityTree::Renumber(PDRTree& node, std::uint16_t entityInstance) {
    auto entry = nodes.extract({node.Key(), node.place});
    node.entityInstance = entityInstance;
    entry.key().first = node.Key();
    nodes.insert(std::move(entry));
}

void EntityTree::FreeTree() {
    nodes.clear();
    root.reset();
    toldOfLimit = false;
}

bool BuildTree(EntityTree& tree, const std::vector<std::shared_ptr<EAPDR>>& associations) {
    for (const auto& association : associations) {
        if (association->AssociationType != physicalAssociation) {
            ConnectCables(tree, *association);
            continue;
        }
        try {
            if (PDRTree* container = AddContainer(tree, *association)) {
                AddContained(tree, *container, *association);
            }
        } catch (const std::bad_alloc&) {
            VANTRIC_LOG(LOG_LEVEL_ERROR,
                        "Failed to create node for ContainerID[%d] and Type[%d]\n\n",
                        association->ContainerID, association->ContainerEntityType);
            return false;
        }
    }
    return true;
}

} // namespace vantric
