/** What a card tells of itself, put together record by record. */
#pragma once

#include "records/extracted_data.hpp"

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

class ToldCard {
public:
    ToldCard& Physical(std::uint16_t containerId, const Entity& container,
                       const std::vector<Entity>& contained) {
        return Associate(0, containerId, container, contained);
    }

    ToldCard& Logical(std::uint16_t containerId, const Entity& container,
                      const std::vector<Entity>& contained) {
        return Associate(1, containerId, container, contained);
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

    /** A state sensor with the members "Link" and "Fault". */
    ToldCard& State(std::uint16_t sensorId, const Entity& entity) {
        auto sensor = std::make_shared<_StateSensors>();
        sensor->sensorId = sensorId;
        sensor->entityType = entity.type;
        sensor->entityInstanceNumber = entity.instance;
        sensor->containerID = entity.container;
        sensor->compositeSensorCount = 2;
        sensor->compositeSensors.resize(2);
        sensor->compositeSensors[0].sensorName = "Link";
        sensor->compositeSensors[0].stateSetName = "Link State";
        sensor->compositeSensors[1].sensorName = "Fault";
        data->stateSensors.push_back(sensor);
        return *this;
    }

    std::shared_ptr<__extractedData> data = std::make_shared<__extractedData>();

private:
    ToldCard& Associate(std::uint8_t associationType, std::uint16_t containerId,
                        const Entity& container, const std::vector<Entity>& contained) {
        auto association = std::make_shared<EAPDR>();
        association->ContainerID = containerId;
        association->AssociationType = associationType;
        association->ContainerEntityType = container.type;
        association->ContainerEntityInstanceNumber = container.instance;
        association->ContainerEntityContainerID = container.container;
        association->ContainedEntityCount = static_cast<std::uint8_t>(contained.size());
        for (const auto& [type, instance, containedIn] : contained) {
            association->containedEntities.push_back(
                std::make_shared<CEList>(CEList{type, instance, containerId, containedIn}));
        }
        data->entityAssociations.push_back(association);
        return *this;
    }
};

/** A card with one network controller, two ports and a module at the first of them. */
inline ToldCard NetworkCard() {
    return ToldCard()
        .Physical(1, {68, 1, 0}, {{144, 1, 1}})
        .Physical(2, {144, 1, 1}, {{300, 1, 2}, {300, 2, 2}})
        .Physical(3, {300, 1, 2}, {{202, 1, 3}});
}

} // namespace vantric::test
