/** What a card tells of itself, put together record by record. */
#pragma once

#include "pldm_cmds/records.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vantric::test {

/** An entity as PDRs name it. */
struct Entity {
    std::uint16_t type = 0;
    std::uint16_t instance = 0;
    std::uint16_t container = 0;
};

inline std::shared_ptr<EAPDR> Association(std::uint8_t associationType, std::uint16_t containerId,
                                          const Entity& container,
                                          const std::vector<Entity>& contained) {
    auto association = std::make_shared<EAPDR>();
    association->ContainerID = containerId;
    association->AssociationType = associationType;
    association->ContainerEntityType = container.type;
    association->ContainerEntityInstanceNumber = container.instance;
    association->ContainerEntityContainerID = container.container;
    association->ContainedEntityCount = static_cast<std::uint8_t>(contained.size());
    for (const auto& entity : contained) {
        association->containedEntities.push_back(std::make_shared<CEList>(
            CEList{entity.type, entity.instance, containerId, entity.container}));
    }
    return association;
}

class ToldCard {
public:
    ToldCard& Physical(std::uint16_t containerId, const Entity& container,
                       const std::vector<Entity>& contained) {
        data->entityAssociations.push_back(Association(0, containerId, container, contained));
        return *this;
    }

    ToldCard& Logical(std::uint16_t containerId, const Entity& container,
                      const std::vector<Entity>& contained) {
        data->entityAssociations.push_back(Association(1, containerId, container, contained));
        return *this;
    }

    ToldCard& Numeric(std::uint16_t sensorId, const Entity& entity,
                      std::uint8_t baseUnit = 2 /* degrees C */, const std::string& name = {}) {
        auto sensor = std::make_shared<__Temp_sensors>();
        sensor->sensorID = sensorId;
        sensor->entityType = entity.type;
        sensor->entityInstanceNumber = entity.instance;
        sensor->containerID = entity.container;
        sensor->baseUnit = baseUnit;
        sensor->auxSensorName = name;
        data->numericSensors.push_back(sensor);
        return *this;
    }

    ToldCard& State(std::uint16_t sensorId, const Entity& entity,
                    const std::vector<std::string>& members = {"Health"}) {
        auto sensor = std::make_shared<_StateSensors>();
        sensor->sensorId = sensorId;
        sensor->entityType = entity.type;
        sensor->entityInstanceNumber = entity.instance;
        sensor->containerID = entity.container;
        sensor->compositeSensorCount = static_cast<std::uint8_t>(members.size());
        for (const auto& member : members) {
            _CompositeSensorData data;
            data.sensorName = member;
            data.stateSetName = member + " set";
            sensor->compositeSensors.push_back(data);
        }
        data->stateSensors.push_back(sensor);
        return *this;
    }

    std::shared_ptr<__extractedData> data = std::make_shared<__extractedData>();
};

/** A card with one network controller, two ports and a connector at the first of them. */
inline ToldCard NetworkCard() {
    ToldCard card;
    card.Physical(1, {68, 1, 0}, {{144, 1, 1}})
        .Physical(2, {144, 1, 1}, {{300, 1, 2}, {300, 2, 2}})
        .Physical(3, {300, 1, 2}, {{202, 1, 3}});
    return card;
}

} // namespace vantric::test
