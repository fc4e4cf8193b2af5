// SPDX-License-Identifier: Apache-2.0
#include "scenario/parse.hpp"
#include "scenario/vocabulary.hpp"

#include <algorithm>

namespace simulator {

namespace {

/** Walks a described tree and collects an association for each container. */
class TreeBuilder {
public:
    /** A container's record goes before those of the containers in it. */
    void Add(const Value& value, std::uint16_t within) {
        Mapping mapping(value);
        const EntityId entity = ReadEntity(mapping, within);
        Remember(mapping, entity);
        const auto contents = mapping.Find("contains");
        std::uint16_t containerId = nextContainer;
        mapping.Read("container-id", containerId);
        mapping.Finish();
        if (!contents) {
            return;
        }
        nextContainer = std::max<std::uint16_t>(nextContainer, containerId) + 1;
        const auto items = contents->Items();
        Association association{containerId, false, entity, {}};
        for (const auto& item : items) {
            Mapping contained(item);
            association.contained.push_back(ReadEntity(contained, containerId));
        }
        tree.associations.push_back(std::move(association));
        for (const auto& item : items) {
            Add(item, containerId);
        }
    }

    EntityTree tree;

private:
    static EntityId ReadEntity(Mapping& mapping, std::uint16_t within) {
        EntityId entity{0, 1, within};
        entity.type = mapping.Get("type").Named<std::uint16_t>(EntityTypeNames());
        mapping.Read("instance", entity.instance);
        return entity;
    }

    void Remember(Mapping& mapping, const EntityId& entity) {
        if (const auto name = mapping.Find("name")) {
            if (!tree.named.emplace(name->Text(), entity).second) {
                name->Fail("there are two entities with the name \"" + name->Text() + "\"");
            }
        }
    }

    std::uint16_t nextContainer = 1;
};

} // namespace

EntityTree ParseEntities(const Value& value) {
    TreeBuilder builder;
    for (const auto& root : value.Items()) {
        builder.Add(root, 0);
    }
    return std::move(builder.tree);
}

void ParseLogicalAssociations(const Value& value, EntityTree& tree) {
    for (const auto& item : value.Items()) {
        Mapping mapping(item);
        Association association;
        association.logical = true;
        association.containerId = mapping.Get("container-id").Integer<std::uint16_t>();
        association.container = ParseEntityId(mapping.Get("container"), tree);
        for (const auto& contained : mapping.Get("contains").Items()) {
            association.contained.push_back(ParseEntityId(contained, tree));
        }
        mapping.Finish();
        tree.associations.push_back(std::move(association));
    }
}

EntityId ParseEntityId(const Value& value, const EntityTree& tree) {
    if (value.IsScalar()) {
        const auto found = tree.named.find(value.Text());
        if (found == tree.named.end()) {
            value.Fail("there is no entity with the name \"" + value.Text() + "\"");
        }
        return found->second;
    }
    Mapping mapping(value);
    EntityId entity{0, 1, 0};
    entity.type = mapping.Get("type").Named<std::uint16_t>(EntityTypeNames());
    mapping.Read("instance", entity.instance);
    mapping.Read("container", entity.container);
    mapping.Finish();
    return entity;
}

} // namespace simulator
