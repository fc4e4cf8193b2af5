/** Controllers without a tree: the second one, and endpoints that tell of no entities. */
#include "modeling_fixture.hpp"

namespace vantric::test {
namespace {

class SecondControllerTest : public ModelingTest {
protected:
    SecondControllerTest() { Begin(true); }

    /** Lets controller 1 have this many ports. */
    void FirstControllerWithPorts(std::uint16_t ports) {
        std::vector<Entity> contained;
        for (std::uint16_t port = 1; port <= ports; ++port) {
            contained.push_back({300, port, 2});
        }
        Publish(
            ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(2, {144, 1, 1}, contained));
    }
};

TEST_F(SecondControllerTest, NamesANumericSensorByItsNumber) {
    const struct {
        const char* what;
        Entity entity;
        std::uint8_t unit;
        std::string sensorPath;
        std::string name;
        int instance;
    } cases[] = {
        {"a port's temperature", {300, 1, 2}, 2, temperatures, "ethernet3", 3},
        {"a port's power", {300, 1, 2}, 7, powers, "ethernet3", 3},
        {"a unit that isn't counted", {300, 1, 2}, 4, temperatures, "ethernet1", 1},
        {"a connector", {202, 1, 2}, 2, temperatures, "ethernet_3", 3},
        {"the controller", {144, 1, 2}, 2, temperatures, "networkcontroller2", 2},
        {"no word", {204, 1, 2}, 2, temperatures, "networkcontroller", 3},
    };
    for (const auto& row : cases) {
        FirstControllerWithPorts(2);
        const auto posted = PublishSecond(ToldCard().Numeric(5, row.entity, row.unit));
        ASSERT_EQ(posted.order, std::vector<std::string>{"dbusDataInsert"}) << row.what;
        const auto& sensor = posted.sensors[0];
        EXPECT_EQ(sensor.objectPath, row.sensorPath + "NIC.Slot.3_sensorid_ctrl2_5") << row.what;
        EXPECT_EQ(sensor.inventoryPath, base + "3/networkcontroller_2") << row.what;
        EXPECT_EQ(sensor.entityName, row.name) << row.what;
        EXPECT_EQ(sensor.sensor.entityInstance, row.instance) << row.what;
        EXPECT_EQ(sensor.resolvedLdid, "") << row.what;
        EXPECT_EQ(sensor.slot, 3) << row.what;
    }
}

TEST_F(SecondControllerTest, CountsTemperaturesAndPowersApart) {
    FirstControllerWithPorts(2);
    const auto card = ToldCard()
                          .Numeric(1, {300, 1, 2})
                          .Numeric(2, {300, 1, 2}, 7)
                          .Numeric(3, {144, 1, 1})
                          .Numeric(4, {300, 2, 2})
                          .Numeric(5, {300, 2, 2}, 7);
    for (int round = 0; round < 2; ++round) { // counting begins anew each time
        const auto posted = PublishSecond(card);
        std::vector<std::string> names;
        for (const auto& sensor : posted.sensors) {
            names.push_back(sensor.entityName);
        }
        EXPECT_EQ(names, (std::vector<std::string>{"ethernet3", "ethernet3", "networkcontroller2",
                                                   "ethernet4", "ethernet4"}));
    }
}

TEST_F(SecondControllerTest, NamesAStateSensorByItsNumber) {
    const struct {
        const char* what;
        Entity entity;
        std::string path;
        int instance;
    } cases[] = {
        {"a port", {300, 1, 2}, "/networkcontroller_2/ethernet_3", 3},
        {"a port of another kind", {302, 2, 2}, "/networkcontroller_2/fibre_channel_4", 4},
        {"a word but no port", {303, 1, 2}, "/networkcontroller_2", 3},
        {"the first connector", {202, 1, 2}, "/connector_3/sfp_8079_1", 3},
        {"the lowest connector type", {200, 1, 2}, "/networkcontroller_2/connector_3/rj45_1", 3},
        {"the highest connector type",
         {299, 1, 2},
         "/networkcontroller_2/connector_3/unkknown_connector_type_1",
         3},
        {"the controller", {144, 1, 2}, "/networkcontroller_2", 0},
        {"the card", {68, 1, 2}, "/networkcontroller_2", 0},
        {"an accelerator", {149, 1, 2}, "/networkcontroller_2", 0},
    };
    for (const auto& row : cases) {
        FirstControllerWithPorts(2);
        const auto posted = PublishSecond(ToldCard().State(9, row.entity, {"A", "B"}));
        ASSERT_EQ(posted.stateSensors.size(), 1U) << row.what;
        const auto& sensor = posted.stateSensors[0];
        EXPECT_EQ(sensor.statePath, base + "3" + row.path + "/sensor/state/sensorid_ctrl2_9")
            << row.what;
        EXPECT_EQ(sensor.entityInstance, row.instance) << row.what;
        EXPECT_EQ(sensor.deviceLdid, "NIC.Slot.3") << row.what;
        EXPECT_EQ(sensor.secondLdid, "") << row.what;
        EXPECT_EQ(sensor.memberCount, 2) << row.what;
        EXPECT_EQ(sensor.memberNames, (std::vector<std::string>{"A", "B"})) << row.what;
        EXPECT_EQ(sensor.stateSetNames, (std::vector<std::string>{"A set", "B set"})) << row.what;
    }
}

TEST_F(SecondControllerTest, EachConnectorSensorCountsOn) {
    FirstControllerWithPorts(2);
    const auto posted =
        PublishSecond(ToldCard().State(1, {202, 1, 2}).State(2, {300, 1, 2}).State(3, {210, 1, 2}));
    ASSERT_EQ(posted.stateSensors.size(), 3U);
    EXPECT_EQ(posted.stateSensors[2].statePath,
              base + "3/connector_4/qsfp_1/sensor/state/sensorid_ctrl2_3");
}

TEST_F(SecondControllerTest, CountersWrapAfter255) {
    FirstControllerWithPorts(255);
    const auto posted = PublishSecond(ToldCard().Numeric(5, {300, 1, 2}).State(9, {202, 1, 2}));
    EXPECT_EQ(posted.sensors.at(0).entityName, "ethernet0");
    EXPECT_EQ(posted.stateSensors.at(0).statePath,
              base + "3/connector_0/sfp_8079_1/sensor/state/sensorid_ctrl2_9");
    EXPECT_EQ(posted.stateSensors.at(0).entityInstance, 0);
}

TEST_F(SecondControllerTest, OnlyEthernetInfiniBandAndFibreChannelArePorts) {
    Publish(ToldCard()
                .Physical(1, {68, 1, 0}, {{144, 1, 1}})
                .Physical(2, {144, 1, 1}, {{300, 1, 2}, {301, 1, 2}, {302, 1, 2}, {303, 1, 2}})
                .Physical(3, {300, 1, 2}, {{202, 1, 3}})); // the port again, as a container
    const auto posted = PublishSecond(ToldCard().Numeric(5, {300, 1, 2}));
    EXPECT_EQ(posted.sensors.at(0).entityName, "ethernet4");
}

TEST_F(SecondControllerTest, LeavesTheFirstControllerAlone) {
    const auto first = NetworkCard().State(9, {300, 1, 2});
    Publish(first);
    for (int round = 0; round < 2; ++round) {
        const auto posted = PublishSecond(NetworkCard().Numeric(5, {300, 1, 2}));
        EXPECT_EQ(posted.order, std::vector<std::string>{"dbusDataInsert"});
        EXPECT_EQ(posted.sensors[0].entityName, "ethernet3"); // its own associations don't count
    }
    EXPECT_EQ(first.data->stateSensors[0].use_count(), 2) << "the tree has let go of its records";
}

TEST_F(SecondControllerTest, WithoutEntitiesASensorBelongsToItsController) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        Entity entity;
        std::string tag;
        std::string inventory;
        int instance;
    } cases[] = {
        {false, 1, {300, 7, 2}, "_sensorid_5", "/networkcontroller_1", 0},
        {false, 1, {144, 7, 2}, "_sensorid_5", "/networkcontroller_1", 0},
        {false, 1, {204, 7, 2}, "_sensorid_5", "/networkcontroller_1", 0},
        {true, 1, {300, 7, 2}, "_sensorid_ctrl1_5", "/networkcontroller_1", 0},
        {true, 2, {202, 7, 2}, "_sensorid_ctrl2_5", "/networkcontroller_2", 0},
        {true, 2, {144, 7, 2}, "_sensorid_ctrl2_5", "/networkcontroller_2", 1},
        {true, 3, {300, 7, 2}, "_sensorid_ctrl1_5", "/networkcontroller_1", 0},
    };
    for (const auto& row : cases) {
        Begin(row.controllers);
        modeling->ModelWithoutTree(ToldCard().Numeric(5, row.entity).data, row.controller);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.order, std::vector<std::string>{"dbusDataInsert"});
        EXPECT_EQ(posted.sensors[0].objectPath, temperatures + "NIC.Slot.3" + row.tag);
        EXPECT_EQ(posted.sensors[0].inventoryPath, base + "3" + row.inventory);
        EXPECT_EQ(posted.sensors[0].entityName, "networkcontroller");
        EXPECT_EQ(posted.sensors[0].sensor.entityInstance, row.instance);
    }
}

TEST_F(SecondControllerTest, WithoutEntitiesAStateSensorBelongsToItsController) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        std::uint16_t type;
        std::string path;
    } cases[] = {
        {false, 1, 144, "/networkcontroller_1/sensor/state/sensorid_9"},
        {false, 1, 202, "/sensor/state/sensorid_9"},
        {false, 1, 200, "/networkcontroller_1/sensor/state/sensorid_9"},
        {false, 1, 299, "/networkcontroller_1/sensor/state/sensorid_9"},
        {false, 1, 300, "/networkcontroller_1/sensor/state/sensorid_9"},
        {true, 1, 300, "/networkcontroller_1/sensor/state/sensorid_ctrl1_9"},
        {true, 2, 300, "/networkcontroller_2/sensor/state/sensorid_ctrl2_9"},
    };
    for (const auto& row : cases) {
        Begin(row.controllers);
        modeling->ModelWithoutTree(ToldCard().State(9, {row.type, 7, 2}).data, row.controller);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.stateSensors.size(), 1U) << row.type;
        EXPECT_EQ(posted.stateSensors[0].statePath, base + "3" + row.path);
        EXPECT_EQ(posted.stateSensors[0].entityInstance, 0);
        EXPECT_EQ(posted.stateSensors[0].secondLdid, "");
        EXPECT_EQ(posted.stateSensors[0].deviceLdid, "NIC.Slot.3");
    }
}

TEST_F(SecondControllerTest, AStateSensorOfAnUnknownEntityIsTold) {
    const CapturedLog log;
    modeling->ModelWithoutTree(ToldCard().State(9, {204, 1, 2}).data, 1);
    EXPECT_TRUE(TakePosted().order.empty());
    EXPECT_EQ(log.Count(1, "Invalid/Not supported EntityType: 204\n"), 1);
}

} // namespace
} // namespace vantric::test
