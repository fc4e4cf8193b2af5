#include "modeling/tree_builder.hpp"

#include "common/log.hpp"
#include "vocabulary/entity_types.hpp"

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
    PDRTree* container = tree.Add(place,
                                  {association.ContainerID, association.ContainerEntityType,
                                   association.ContainerEntityInstanceNumber},
                                  association.ContainerEntityContainerID);
    if (container == nullptr) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed to create node for ContainerID[%d] and Type[%d]\n\n",
                    association.ContainerID, association.ContainerEntityType);
    }
    return container;
}

void AddContained(EntityTree& tree, PDRTree& container, const EAPDR& association) {
    for (const auto& entity : association.containedEntities) {
        const EntityKey key{entity->ContainerID, entity->ContainedEntityType,
                            entity->ContainedEntityInstanceNumber};
        if (tree.Add(&container, key, entity->ContainedEntityContainerID) == nullptr) {
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

bool BuildTree(EntityTree& tree, const std::vector<std::shared_ptr<EAPDR>>& associations) {
    for (const auto& association : associations) {
        if (association->AssociationType != physicalAssociation) {
            ConnectCables(tree, *association);
            continue;
        }
        PDRTree* container = AddContainer(tree, *association);
        if (container == nullptr) {
            return false;
        }
        AddContained(tree, *container, *association);
    }
    return true;
}

} // namespace vantric
