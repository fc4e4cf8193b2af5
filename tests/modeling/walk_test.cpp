#include "modeling_fixture.hpp"

#include <algorithm>

namespace vantric::test {
namespace {

using WalkTest = ModelingTest;

TEST_F(WalkTest, NamesANumericSensorByItsPlace) {
    const struct {
        const char* what;
        Entity entity;
        std::uint8_t unit;
        bool controllers;
        std::string sensorPath;
        std::string inventoryPath;
        std::string name;
        int instance;
    } cases[] = {
        {"on a port",
         {300, 1, 2},
         2,
         false,
         temperatures + "NIC.Slot.3_sensorid_5",
         base + "3/networkcontroller_1/ethernet_1",
         "ethernet_1",
         1},
        {"of a device with two controllers",
         {300, 1, 2},
         2,
         true,
         temperatures + "NIC.Slot.3_sensorid_ctrl1_5",
         base + "3/networkcontroller_1/ethernet_1",
         "ethernet_1",
         1},
        {"in watts",
         {300, 2, 2},
         7,
         false,
         powers + "NIC.Slot.3_sensorid_5",
         base + "3/networkcontroller_1/ethernet_2",
         "ethernet_2",
         2},
        {"in kelvin",
         {300, 2, 2},
         4,
         false,
         temperatures + "NIC.Slot.3_sensorid_5",
         base + "3/networkcontroller_1/ethernet_2",
         "ethernet_2",
         2},
        {"on a connector of which the path tells no number",
         {202, 1, 3},
         2,
         false,
         temperatures + "NIC.Slot.3_sensorid_5",
         base + "3/networkcontroller_1/ethernet_1/sfp_8079_1",
         "sfp_8079_1",
         1},
        {"on the card",
         {68, 1, 1},
         2,
         false,
         temperatures + "NIC.Slot.3_sensorid_5",
         base + "3",
         "add_in_card_1",
         1},
        {"of an entity that no association tells of",
         {80, 4, 9},
         2,
         false,
         temperatures + "NIC.Slot.3_sensorid_5",
         base + "3",
         "add_in_card_1",
         1},
    };
    for (const auto& row : cases) {
        Begin(row.controllers);
        const auto posted = Publish(NetworkCard().Numeric(5, row.entity, row.unit));
        ASSERT_EQ(posted.sensors.size(), 1U) << row.what;
        const auto& sensor = posted.sensors[0];
        EXPECT_EQ(sensor.objectPath, row.sensorPath) << row.what;
        EXPECT_EQ(sensor.inventoryPath, row.inventoryPath) << row.what;
        EXPECT_EQ(sensor.entityName, row.name) << row.what;
        EXPECT_EQ(sensor.sensor.entityInstance, row.instance) << row.what;
        EXPECT_EQ(sensor.slot, 3) << row.what;
        EXPECT_EQ(sensor.deviceLdid, "NIC.Slot.3") << row.what;
        EXPECT_EQ(sensor.resolvedLdid, "") << row.what;
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
    told.upperThresholdCritical = 95;
    told.upperThresholdWarning = 85;
    told.normalMax = 75;
    told.normalMin = 5;
    told.lowerThresholdWarning = -5;
    told.lowerThresholdCritical = -15;
    told.lowerThresholdFatal = -25;

    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 1U);
    const auto& request = posted.sensors[0];
    EXPECT_EQ(request.sensor.sensorKind, SENSOR_KIND_PROBE);
    EXPECT_EQ(request.sensor.baseUnit, 2);
    EXPECT_EQ(request.sensor.sensorId, 5);
    EXPECT_EQ(request.sensor.entityType, 300);
    EXPECT_EQ(request.sensor.temperature, -4);
    EXPECT_EQ(request.sensor.thresholdReadError, 0);
    EXPECT_EQ(request.sensor.upperFatal, 105);
    EXPECT_EQ(request.sensor.upperCritical, 95);
    EXPECT_EQ(request.sensor.upperWarning, 85);
    EXPECT_EQ(request.sensor.normalMax, 75);
    EXPECT_EQ(request.sensor.normalMin, 5);
    EXPECT_EQ(request.sensor.lowerWarning, -5);
    EXPECT_EQ(request.sensor.lowerCritical, -15);
    EXPECT_EQ(request.sensor.lowerFatal, -25);
    EXPECT_EQ(request.sensor.name, "Module");
    EXPECT_EQ(request.identity.vendorId, 1);
    EXPECT_EQ(request.identity.subVendorId, 2);
    EXPECT_EQ(request.identity.subDeviceId, 3);
    EXPECT_EQ(request.identity.deviceId, 4);
    EXPECT_EQ(request.cpuAffinity, 1);
}

TEST_F(WalkTest, NamesAStateSensorByItsPlace) {
    const struct {
        const char* what;
        Entity entity;
        bool controllers;
        std::string path;
        int instance;
    } cases[] = {
        {"on a port",
         {300, 1, 2},
         false,
         "/networkcontroller_1/ethernet_1/sensor/state/sensorid_9",
         1},
        {"of a device with two controllers",
         {300, 2, 2},
         true,
         "/networkcontroller_1/ethernet_2/sensor/state/sensorid_ctrl1_9",
         2},
        {"on the connector",
         {202, 1, 3},
         false,
         "/networkcontroller_1/ethernet_1/sfp_8079_1/sensor/state/sensorid_9",
         1},
        {"on the controller",
         {144, 1, 1},
         false,
         "/networkcontroller_1/sensor/state/sensorid_9",
         0},
        {"on the card", {68, 1, 1}, false, "/sensor/state/sensorid_9", 0},
        {"of an accelerator that isn't told of", {149, 6, 1}, false, "/sensor/state/sensorid_9", 0},
        {"of an entity that isn't told of", {80, 4, 9}, false, "/sensor/state/sensorid_9", 4},
    };
    for (const auto& row : cases) {
        Begin(row.controllers);
        const auto posted = Publish(NetworkCard().State(9, row.entity, {"Link", "Fault"}));
        ASSERT_EQ(posted.stateSensors.size(), 1U) << row.what;
        const auto& sensor = posted.stateSensors[0];
        EXPECT_EQ(sensor.statePath, base + "3" + row.path) << row.what;
        EXPECT_EQ(sensor.entityInstance, row.instance) << row.what;
        EXPECT_EQ(sensor.entityType, row.entity.type) << row.what;
        EXPECT_EQ(sensor.sensorId, 9) << row.what;
        EXPECT_EQ(sensor.slot, 3) << row.what;
        EXPECT_EQ(sensor.deviceLdid, "NIC.Slot.3") << row.what;
        EXPECT_EQ(sensor.secondLdid, "NIC.Slot.3") << row.what;
        EXPECT_EQ(sensor.memberCount, 2) << row.what;
        EXPECT_EQ(sensor.memberNames, (std::vector<std::string>{"Link", "Fault"})) << row.what;
        EXPECT_TRUE(sensor.stateSetNames.empty() && sensor.valueTexts.empty()) << row.what;
    }
}

/** The network card with a numbered connector between port and module. */
ToldCard CardWithConnector(std::uint16_t connector) {
    return ToldCard()
        .Physical(1, {68, 1, 0}, {{144, 1, 1}})
        .Physical(2, {144, 1, 1}, {{185, connector, 2}})
        .Physical(3, {185, connector, 2}, {{202, 1, 3}});
}

TEST_F(WalkTest, AConnectorTakesItsNumberFromThePath) {
    const struct {
        std::uint16_t connector;
        int number;
    } cases[] = {{4, 4}, {255, 255}, {258, 2}};
    for (const auto& [connector, number] : cases) {
        const auto card = CardWithConnector(connector)
                              .Numeric(5, {202, 1, 3})
                              .Numeric(6, {202, 1, 3}, 7)
                              .State(9, {202, 1, 3});
        const auto posted = Publish(card);
        const std::string path =
            base + "3/networkcontroller_1/connector_" + std::to_string(connector) + "/sfp_8079_";
        ASSERT_EQ(posted.sensors.size(), 2U);
        ASSERT_EQ(posted.stateSensors.size(), 1U);
        for (const auto& sensor : posted.sensors) {
            EXPECT_EQ(sensor.inventoryPath, path + "1");
            EXPECT_EQ(sensor.entityName, "ethernet_" + std::to_string(number));
            EXPECT_EQ(sensor.sensor.entityInstance, number);
        }
        // By now the connector is found under its new number.
        EXPECT_EQ(posted.stateSensors[0].statePath,
                  path + std::to_string(number) + "/sensor/state/sensorid_9");
        EXPECT_EQ(posted.stateSensors[0].entityInstance, number);
        EXPECT_EQ(card.data->stateSensors[0]->entityInstanceNumber, number);
    }
}

TEST_F(WalkTest, AConnectorKeepsItsNumberWhereThePathTellsNone) {
    for (const std::uint16_t connector : {0, 256}) {
        const auto posted = Publish(CardWithConnector(connector).Numeric(5, {202, 1, 3}));
        ASSERT_EQ(posted.sensors.size(), 1U);
        EXPECT_EQ(posted.sensors[0].entityName, "sfp_8079_1");
        EXPECT_EQ(posted.sensors[0].sensor.entityInstance, 1);
    }
}

TEST_F(WalkTest, OnlyTheSensorsOwnTypeMakesItAConnectorSensor) {
    // Both land on the connector's node; the sensor's own entity isn't a connector.
    const auto card = CardWithConnector(4).Numeric(5, {202, 1, 3});
    card.data->numericSensors[0]->entityType = 185;
    card.data->numericSensors[0]->entityInstanceNumber = 4;
    card.data->numericSensors[0]->containerID = 2;
    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 1U);
    EXPECT_EQ(posted.sensors[0].entityName, "connector_4");
}

TEST_F(WalkTest, PassesOverWhatHasNoNameOrStandsTwice) {
    const CapturedLog log;
    const auto card = NetworkCard()
                          .Physical(4, {144, 1, 1}, {{204, 1, 4}})
                          .Physical(5, {204, 1, 4}, {{187, 1, 5}})
                          .Numeric(1, {204, 1, 4}) // no word, so its node publishes nothing
                          .State(2, {204, 1, 4})
                          .Numeric(3, {300, 1, 3}) // the port as container of the connector
                          .State(4, {300, 1, 3})
                          .Numeric(5, {187, 1, 5}); // below the node without a word
    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 1U);
    EXPECT_EQ(posted.sensors[0].inventoryPath, base + "3/networkcontroller_1/cable_1");
    EXPECT_TRUE(posted.stateSensors.empty());
    EXPECT_TRUE(log.Messages(1).empty());
}

TEST_F(WalkTest, NodesOfTheRootsTypeAreNeverPassedOver) {
    const auto card = ToldCard()
                          .Physical(1, {144, 1, 0}, {{144, 2, 1}})
                          .Numeric(5, {144, 2, 1})
                          .Numeric(6, {144, 1, 1});
    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 2U);
    EXPECT_EQ(posted.sensors[0].sensor.sensorId, 6);
    EXPECT_EQ(posted.sensors[0].entityName, "networkcontroller_1");
    EXPECT_EQ(posted.sensors[1].entityName, "networkcontroller_2");
    EXPECT_EQ(posted.sensors[1].inventoryPath, base + "3");
}

TEST_F(WalkTest, TellsOfASensorWhoseEntityHasNoWord) {
    const CapturedLog log;
    const auto posted = Publish(
        NetworkCard().Numeric(5, {204, 1, 9}).State(9, {205 + 11, 1, 9}).State(10, {300, 1, 2}));
    EXPECT_TRUE(posted.sensors.empty());
    ASSERT_EQ(posted.stateSensors.size(), 1U);
    EXPECT_EQ(posted.stateSensors[0].sensorId, 10);
    std::vector<std::string> told;
    for (const auto& line : log.Lines()) {
        if (line.level == 1) {
            told.push_back(line.function + ": " + line.message);
        }
    }
    EXPECT_EQ(told, (std::vector<std::string>{
                        "NumericSensorHandler: Invalid/Not supported EntityType: 204\n",
                        "UpdateDbus: Invalid/Not supported EntityType: 216\n"}));
}

TEST_F(WalkTest, AManagementModuleAndAllAboveItHaveNoPiece) {
    const auto card = ToldCard()
                          .Physical(1, {60, 1, 0}, {{63, 1, 1}, {6, 2, 1}})
                          .Physical(2, {63, 1, 1}, {{149, 3, 2}})
                          .Numeric(5, {149, 3, 2})
                          .State(9, {63, 1, 1})
                          .State(10, {6, 2, 1});
    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 1U);
    EXPECT_EQ(posted.sensors[0].inventoryPath, base + "3/accelerator_3");
    ASSERT_EQ(posted.stateSensors.size(), 2U);
    EXPECT_EQ(posted.stateSensors[0].statePath, base + "3/sensor/state/sensorid_9");
    EXPECT_EQ(posted.stateSensors[1].statePath,
              base + "3/communication_channel/sensor/state/sensorid_10");
}

TEST_F(WalkTest, TellsWhereACableLeads) {
    const CapturedLog log;
    Publish(NetworkCard()
                .Physical(4, {144, 1, 1}, {{187, 1, 4}})
                .Logical(5, {187, 1, 4}, {{300, 2, 2}, {187, 1, 4}}));
    EXPECT_EQ(log.Count(4, "LogicalConnectionTo\n"), 1);
    EXPECT_EQ(log.Count(4, "/networkcontroller_1/ethernet_2\n"), 1);
}

TEST_F(WalkTest, WithoutATreeOfItsOwnAnEndpointPublishesNothing) {
    const auto posted = Publish(ToldCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2}));
    EXPECT_EQ(posted.order, std::vector<std::string>{"dbusClear"});
}

TEST_F(WalkTest, RemovesTheSensorsBeforeItBuildsAnew) {
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2});
    for (const std::uint8_t controller : {1, 3, 1, 0}) {
        modeling->CreatePDRTree(card.data, controller);
        EXPECT_EQ(TakePauses(), std::vector{std::chrono::seconds(2)});
        const auto posted = TakePosted();
        EXPECT_EQ(posted.order, (std::vector<std::string>{"dbusClear", "dbusDataInsert",
                                                          "dbusStateSensorDataInsert"}));
        EXPECT_EQ(posted.clears[0].mode, CLEAR_SENSORS);
        EXPECT_EQ(posted.clears[0].deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(posted.sensors[0].entityName, "ethernet_1");
    }
}

TEST_F(WalkTest, WithoutDataNothingChanges) {
    const CapturedLog log;
    for (const std::uint8_t controller : {1, 2}) {
        modeling->CreatePDRTree(nullptr, controller);
    }
    EXPECT_TRUE(TakePosted().order.empty());
    EXPECT_EQ(log.Count(1, "Extracted data is null\n"), 2);
}

TEST_F(WalkTest, GoesOnWhenTheChannelTakesNothing) {
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2});
    SetChannelResult(-12);
    const CapturedLog log;
    EXPECT_TRUE(Publish(card).order.empty());
    EXPECT_EQ(log.Count(1, "DeleteDBUSPaths ERROR for slot = 3, execRet = -12\n"), 1);
    EXPECT_EQ(log.Count(4, "OneWayChannel_Execute ERROR, execRet = -12\n"), 2);
}

TEST_F(WalkTest, ACardThatNestsWithoutEndGetsNoPathsWithoutEnd) {
    ToldCard card;
    card.Physical(0, {68, 1, 9999}, {{144, 1, 0}});
    for (std::uint16_t level = 0; level < 4000; ++level) {
        const auto next = static_cast<std::uint16_t>(level + 1);
        const std::uint16_t type = level % 2 == 0 ? 144 : 145;
        card.Physical(next, {type, 1, level}, {{static_cast<std::uint16_t>(289 - type), 1, next}});
    }
    card.Numeric(1, {145, 1, 1}).Numeric(2, {144, 1, 4000}).State(3, {144, 1, 4000});
    const CapturedLog log;
    const auto posted = Publish(card);
    ASSERT_EQ(posted.sensors.size(), 1U);
    EXPECT_EQ(posted.sensors[0].inventoryPath, base + "3/networkcontroller_1/io_controller_1");
    EXPECT_TRUE(posted.stateSensors.empty());
    EXPECT_EQ(log.Messages(1).size(), 1U);
}

} // namespace
} // namespace vantric::test
