// SPDX-License-Identifier: Apache-2.0
/** A device's modeling: what its card tells goes in, and what it posts comes out as text. */
#pragma once

#include "modeling/modeling.hpp"
#include "support/captured_log.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vantric::test {

using Texts = std::vector<std::string>;

inline constexpr Controller first = OneOfSeveral(1);
inline constexpr Controller second = OneOfSeveral(2);
inline constexpr Controller third = OneOfSeveral(3);

/** An entity as PDRs name it. */
struct Entity {
    std::uint16_t type = 0;
    std::uint16_t instance = 0;
    std::uint16_t container = 0;
};

/** What a card tells of itself, put together record by record. */
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
                      std::uint8_t baseUnit = BASE_UNIT_DEGREES_C, const std::string& name = {}) {
        auto sensor = std::make_shared<__Temp_sensors>();
        sensor->sensorID = sensorId;
        sensor->entityType = entity.type;
        sensor->entityInstanceNumber = entity.instance;
        sensor->containerID = entity.container;
        sensor->baseUnit = baseUnit;
        sensor->auxSensorName = name;
        data->numericSensors.push_back(std::move(sensor));
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
        data->stateSensors.push_back(std::move(sensor));
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
        for (const auto& [type, instance, containedIn] : contained) {
            association->containedEntities.push_back(
                std::make_shared<CEList>(CEList{type, instance, containerId, containedIn}));
        }
        data->entityAssociations.push_back(std::move(association));
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

/** A path with its root as a letter: C the card, I inventory, T and P the sensors of the card. */
inline std::string Short(const std::string& path) {
    for (const auto& [root, letter] : std::vector<std::pair<std::string, std::string>>{
             {"/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3", "C"},
             {"/xyz/openbmc_project/inventory/system/", "I:"},
             {"/xyz/openbmc_project/sensors/temperature/NIC.Slot.3_sensorid_", "T:"},
             {"/xyz/openbmc_project/sensors/temperature/", "T/"},
             {"/xyz/openbmc_project/sensors/power/NIC.Slot.3_sensorid_", "P:"},
             {"/xyz/openbmc_project/sensors/power/", "P/"}}) {
        if (path.starts_with(root)) {
            return letter + path.substr(root.size());
        }
    }
    return path;
}

/** The sensors that were posted, numeric ones first: paths, name and instance; of a board also slot
 *  and LDID. */
inline Texts Shown(const PostedRequests& posted) {
    Texts texts;
    for (const auto& request : posted.sensors) {
        EXPECT_EQ(request.deviceLdid, "NIC.Slot.3");
        texts.push_back(Short(request.objectPath) + " " + Short(request.inventoryPath) + " " +
                        request.entityName + " " + std::to_string(request.sensor.entityInstance));
        if (request.slot != 3 || !request.resolvedLdid.empty()) {
            texts.back() += " " + std::to_string(request.slot) + " " + request.resolvedLdid;
        }
    }
    for (const auto& request : posted.stateSensors) {
        EXPECT_EQ(request.deviceLdid, "NIC.Slot.3");
        texts.push_back(Short(request.statePath) + " " + std::to_string(request.entityInstance) +
                        " " + request.secondLdid);
    }
    return texts;
}

class ModelingTest : public testing::Test {
protected:
    ModelingTest() {
        SetClockScale(0);
        Begin();
    }

    ~ModelingTest() override {
        SetPostResult(0);
        modeling.reset();
        Forget();
    }

    /** Makes the device anew: the card in slot 3. */
    void Begin(const PciIdentity& identity = {}) {
        modeling = std::make_unique<Modeling>(
            ModelingParameters{.slot = 3,
                               .ldid = "NIC.Slot.3",
                               .inventoryBase =
                                   "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/",
                               .identity = identity,
                               .cpuAffinity = 1},
            RecordingDoors().publisher);
        Forget();
    }

    /** What the device posts for an endpoint that tells of its entities. */
    PostedRequests Publish(const ToldCard& card, const Controller& controller = onlyController) {
        modeling->CreatePDRTree(card.data, controller);
        return TakePosted();
    }

    /** The same for one that tells of none. */
    PostedRequests PublishFlat(const ToldCard& card, const Controller& controller) {
        modeling->ModelWithoutTree(card.data, controller);
        return TakePosted();
    }

    static void Forget() {
        TakePosted();
        TakePauses();
    }

    std::unique_ptr<Modeling> modeling;
};

} // namespace vantric::test
