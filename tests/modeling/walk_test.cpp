#include "modeling_fixture.hpp"

namespace vantric::test {
namespace {

using WalkTest = ModelingTest;

TEST_F(WalkTest, NamesANumericSensorByItsPlace) {
    const struct {
        const char* what;
        Entity entity;
        std::uint8_t unit;
        std::string root;
        std::string shown; // behind the card's path
    } cases[] = {
        {"on a port", {300, 1, 2}, 2, "T:", "/networkcontroller_1/ethernet_1, ethernet_1, 1"},
        {"in watts", {300, 2, 2}, 7, "P:", "/networkcontroller_1/ethernet_2, ethernet_2, 2"},
        {"in kelvin", {300, 2, 2}, 4, "T:", "/networkcontroller_1/ethernet_2, ethernet_2, 2"},
        {"on a module whose path tells no connector",
         {202, 1, 3},
         2,
         "T:",
         "/networkcontroller_1/ethernet_1/sfp_8079_1, sfp_8079_1, 1"},
        {"on the card", {68, 1, 1}, 2, "T:", ", add_in_card_1, 1"},
        {"in no association", {80, 4, 9}, 2, "T:", ", add_in_card_1, 1"},
        {"of an instance above a byte",
         {300, 258, 5},
         2,
         "T:",
         "/networkcontroller_1/ethernet_258, ethernet_258, 2"},
    };
    const auto card = [] { return NetworkCard().Physical(5, {144, 1, 1}, {{300, 258, 5}}); };
    for (const auto& [what, entity, unit, root, shown] : cases) {
        for (const bool controllers : {false, true}) {
            Begin(controllers);
            EXPECT_EQ(ShowAll(Publish(card().Numeric(5, entity, unit)).sensors),
                      Texts{root + "NIC.Slot.3_sensorid_" + (controllers ? "ctrl1_" : "") +
                            "5, B3" + shown})
                << what;
        }
    }
}

TEST_F(WalkTest, CarriesTheWholeSensor) {
    Begin(false, {.vendorId = 1, .subVendorId = 2, .subDeviceId = 3, .deviceId = 4});
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}, 2, "Module");
    auto& told = *card.data->numericSensors[0];
    told.sensorNeededFor = SENSOR_KIND_PROBE;
    told.temperature = -4;
    told.thresholdReadingError = 77;
    told.upperThresholdFatal = 105;
    told.lowerThresholdFatal = -25;
    told.normalMax = 70;
    told.normalMin = -10;
    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 1U);
    const auto& [sensor, path, ldid, inventory, name, resolved, slot, identity, affinity] =
        posted.sensors[0];
    EXPECT_EQ(sensor.sensorKind, SENSOR_KIND_PROBE);
    EXPECT_EQ(sensor.baseUnit, 2);
    EXPECT_EQ(sensor.sensorId, 5);
    EXPECT_EQ(sensor.entityType, 300);
    EXPECT_EQ(sensor.temperature, -4);
    EXPECT_EQ(sensor.thresholdReadError, 0);
    EXPECT_EQ(sensor.upperFatal, 105);
    EXPECT_EQ(sensor.lowerFatal, -25);
    EXPECT_EQ(sensor.normalMax, 70);
    EXPECT_EQ(sensor.normalMin, -10);
    EXPECT_EQ(sensor.name, "Module");
    EXPECT_EQ(identity.vendorId, 1);
    EXPECT_EQ(identity.subVendorId, 2);
    EXPECT_EQ(identity.subDeviceId, 3);
    EXPECT_EQ(identity.deviceId, 4);
    EXPECT_EQ(affinity, 1);
}

TEST_F(WalkTest, NamesAStateSensorByItsPlace) {
    const struct {
        const char* what;
        Entity entity;
        std::string place;
        std::string instance;
    } cases[] = {
        {"on a port", {300, 2, 2}, "/networkcontroller_1/ethernet_2", "2"},
        {"on the module", {202, 1, 3}, "/networkcontroller_1/ethernet_1/sfp_8079_1", "1"},
        {"on the controller", {144, 1, 1}, "/networkcontroller_1", "0"},
        {"on the card", {68, 1, 1}, "", "0"},
        {"of an accelerator that isn't told of", {149, 6, 1}, "", "0"},
        {"of an entity that isn't told of", {80, 4, 9}, "", "4"},
    };
    for (const auto& [what, entity, place, instance] : cases) {
        for (const bool controllers : {false, true}) {
            Begin(controllers);
            const auto card = NetworkCard().State(9, entity);
            EXPECT_EQ(ShowAll(Publish(card).stateSensors),
                      Texts{"B3" + place + "/sensor/state/sensorid_" +
                            (controllers ? "ctrl1_" : "") + "9, " + instance + ", NIC.Slot.3"})
                << what;
            const bool numbered = entity.type != 68 && entity.type != 144;
            EXPECT_EQ(card.data->stateSensors[0]->entityInstanceNumber,
                      numbered ? entity.instance : 0)
                << what;
        }
    }
}

TEST_F(WalkTest, CarriesTheWholeStateSensor) {
    const auto posted = Publish(NetworkCard().State(9, {300, 1, 2}));
    ASSERT_EQ(posted.stateSensors.size(), 1U);
    const auto& request = posted.stateSensors[0];
    EXPECT_EQ(request.slot, 3);
    EXPECT_EQ(request.entityType, 300);
    EXPECT_EQ(request.sensorId, 9);
    EXPECT_EQ(request.memberCount, 2);
    EXPECT_EQ(request.memberNames, (Texts{"Link", "Fault"}));
    EXPECT_TRUE(request.stateSetNames.empty() && request.valueTexts.empty());
}

/** A network card with a numbered connector that holds a module. */
ToldCard CardWithConnector(std::uint16_t connector) {
    return ToldCard()
        .Physical(1, {68, 1, 0}, {{144, 1, 1}})
        .Physical(2, {144, 1, 1}, {{185, connector, 2}})
        .Physical(3, {185, connector, 2}, {{202, 1, 3}});
}

TEST_F(WalkTest, AConnectorsModuleTakesItsNumberFromThePath) {
    const struct {
        std::uint16_t connector;
        std::string number;
    } cases[] = {{4, "4"}, {255, "255"}, {258, "2"}};
    for (const auto& [connector, number] : cases) {
        const auto card = CardWithConnector(connector)
                              .Numeric(5, {202, 1, 3})
                              .Numeric(6, {202, 1, 3}, 7)
                              .State(9, {202, 1, 3});
        const auto posted = Publish(card);
        const std::string path =
            "B3/networkcontroller_1/connector_" + std::to_string(connector) + "/sfp_8079_";
        const std::string place = ", " + path + "1, ethernet_" + number + ", " + number;
        EXPECT_EQ(ShowAll(posted.sensors),
                  (Texts{"T:NIC.Slot.3_sensorid_5" + place, "P:NIC.Slot.3_sensorid_6" + place}));
        // By now the module is found under its new number.
        EXPECT_EQ(ShowAll(posted.stateSensors),
                  Texts{path + number + "/sensor/state/sensorid_9, " + number + ", NIC.Slot.3"});
        EXPECT_EQ(std::to_string(card.data->stateSensors[0]->entityInstanceNumber), number);
    }
}

TEST_F(WalkTest, AModuleKeepsItsNumberWhereThePathTellsNone) {
    for (const std::uint16_t connector : {0, 256}) {
        const auto posted = Publish(CardWithConnector(connector).Numeric(5, {202, 1, 3}));
        EXPECT_EQ(posted.sensors.at(0).entityName, "sfp_8079_1");
    }
}

TEST_F(WalkTest, PassesOverWhatHasNoNameOrStandsTwice) {
    const CapturedLog log;
    const auto posted = Publish(NetworkCard()
                                    .Physical(4, {144, 1, 1}, {{204, 1, 4}})
                                    .Physical(5, {204, 1, 4}, {{187, 1, 5}})
                                    .Numeric(1, {204, 1, 4}) // no word for the node's type
                                    .State(2, {204, 1, 4})
                                    .Numeric(3, {300, 1, 3}) // the port as a container
                                    .State(4, {300, 1, 3})
                                    .Numeric(5, {187, 1, 5})); // below the node without a word
    EXPECT_EQ(ShowAll(posted.sensors),
              Texts{"T:NIC.Slot.3_sensorid_5, B3/networkcontroller_1/cable_1, cable_1, 1"});
    EXPECT_TRUE(posted.stateSensors.empty());
    EXPECT_TRUE(log.Messages(1).empty());
}

TEST_F(WalkTest, AnEntityStandsWhereItsOwnContainerHoldsIt) {
    const struct {
        const char* what;
        ToldCard card;
        Entity entity;
        std::string place;
    } cases[] = {
        {"a container told of before what holds it",
         ToldCard()
             .Physical(1, {68, 1, 0}, {{185, 2, 1}})
             .Physical(2, {144, 1, 7}, {{300, 1, 2}})
             .Physical(7, {185, 2, 1}, {{144, 1, 7}}),
         {144, 1, 2},
         "/connector_2/networkcontroller_1"},
        {"a container that nothing holds",
         ToldCard().Physical(1, {68, 1, 0}, {}).Physical(2, {144, 1, 7}, {}),
         {144, 1, 2},
         ""},
        {"contained here, but of another container",
         NetworkCard().Physical(4, {68, 1, 0}, {{300, 2, 2}}),
         {300, 2, 4},
         "/networkcontroller_1/ethernet_2"},
        {"contained here, but of a container that nobody has",
         NetworkCard().Physical(4, {68, 1, 0}, {{300, 2, 8}}),
         {300, 2, 4},
         ""},
    };
    for (const auto& [what, told, entity, place] : cases) {
        auto card = told;
        const auto posted = Publish(card.Numeric(5, entity).State(9, entity));
        EXPECT_EQ(Short(posted.sensors.at(0).inventoryPath), "B3" + place) << what;
        EXPECT_EQ(Short(posted.stateSensors.at(0).statePath),
                  "B3" + place + "/sensor/state/sensorid_9")
            << what;
    }
}

TEST_F(WalkTest, NodesOfTheRootsTypeAreNeverPassedOver) {
    const auto posted = Publish(ToldCard()
                                    .Physical(1, {144, 1, 0}, {{144, 2, 1}})
                                    .Numeric(5, {144, 2, 1})
                                    .Numeric(6, {144, 1, 1}));
    EXPECT_EQ(ShowAll(posted.sensors),
              (Texts{"T:NIC.Slot.3_sensorid_6, B3, networkcontroller_1, 1",
                     "T:NIC.Slot.3_sensorid_5, B3, networkcontroller_2, 2"}));
}

TEST_F(WalkTest, TellsOfASensorWhoseEntityHasNoWord) {
    const CapturedLog log;
    const auto posted =
        Publish(NetworkCard().Numeric(5, {204, 1, 9}).State(9, {216, 1, 9}).State(10, {300, 1, 2}));
    EXPECT_EQ(posted.order, (Texts{"Clear", "InsertStateSensor"}));
    EXPECT_EQ(log.Messages(1), (Texts{"Invalid/Not supported EntityType: 204\n",
                                      "Invalid/Not supported EntityType: 216\n"}));
}

TEST_F(WalkTest, AManagementModuleAndAllAboveItHaveNoPiece) {
    const auto posted = Publish(ToldCard()
                                    .Physical(1, {60, 1, 0}, {{63, 1, 1}, {6, 2, 1}})
                                    .Physical(2, {63, 1, 1}, {{149, 3, 2}})
                                    .Numeric(5, {149, 3, 2})
                                    .State(9, {63, 1, 1})
                                    .State(10, {6, 2, 1}));
    EXPECT_EQ(ShowAll(posted.sensors),
              Texts{"T:NIC.Slot.3_sensorid_5, B3/accelerator_3, accelerator_3, 3"});
    EXPECT_EQ(ShowAll(posted.stateSensors),
              (Texts{"B3/sensor/state/sensorid_9, 1, NIC.Slot.3",
                     "B3/communication_channel/sensor/state/sensorid_10, 2, NIC.Slot.3"}));
}

TEST_F(WalkTest, TellsWhereACableLeads) {
    const CapturedLog log;
    Publish(NetworkCard()
                .Physical(4, {144, 1, 1}, {{187, 1, 4}})
                .Logical(5, {187, 1, 4}, {{300, 2, 2}, {187, 1, 4}}));
    EXPECT_EQ(log.Count(4, "LogicalConnectionTo\n"), 1);
    EXPECT_EQ(log.Count(4, "/networkcontroller_1/ethernet_2\n"), 1);
}

TEST_F(WalkTest, WithoutAssociationsNothingIsPublished) {
    const auto posted = Publish(ToldCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2}));
    EXPECT_EQ(posted.order, Texts{"Clear"});
}

TEST_F(WalkTest, RemovesTheSensorsBeforeItBuildsAnew) {
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2});
    for (const std::uint8_t controller : {1, 3, 1, 0}) {
        const auto posted = Publish(card, controller);
        EXPECT_EQ(TakePauses(), std::vector{std::chrono::seconds(2)});
        EXPECT_EQ(posted.order, (Texts{"Clear", "InsertSensor", "InsertStateSensor"}));
        EXPECT_EQ(posted.clears.at(0).mode, CLEAR_SENSORS);
    }
}

TEST_F(WalkTest, WithoutDataNothingChanges) {
    const CapturedLog log;
    modeling->CreatePDRTree(nullptr, 1);
    modeling->CreatePDRTree(nullptr, 2);
    EXPECT_TRUE(TakePosted().order.empty());
    EXPECT_EQ(log.Count(1, "Extracted data is null\n"), 2);
}

TEST_F(WalkTest, GoesOnWhenTheChannelTakesNothing) {
    SetPostResult(-12);
    const CapturedLog log;
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2});
    Publish(card);
    EXPECT_EQ(log.Count(1, "DeleteDBUSPaths ERROR for slot = 3, execRet = -12\n"), 1);
    EXPECT_EQ(log.Count(4, "OneWayChannel_Execute ERROR, execRet = -12\n"), 2);
    PublishFlat(card, 1);
    EXPECT_EQ(log.Count(4, "OneWayChannel_Execute ERROR, execRet = -12\n"), 4);
}

} // namespace
} // namespace vantric::test
