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

TEST_F(SecondControllerTest, NumbersItsSensorsBehindThePortsOfTheFirst) {
    const struct {
        const char* what;
        Entity entity;
        std::uint8_t unit;
        std::string root;
        std::string shown;
    } cases[] = {
        {"a port's temperature", {300, 1, 2}, 2, "T:", "ethernet3, 3"},
        {"a port's power", {300, 1, 2}, 7, "P:", "ethernet3, 3"},
        {"a unit that isn't counted", {300, 1, 2}, 4, "T:", "ethernet1, 1"},
        {"a connector", {202, 1, 2}, 2, "T:", "ethernet_3, 3"},
        {"the controller", {144, 1, 2}, 2, "T:", "networkcontroller2, 2"},
        {"no word", {204, 1, 2}, 2, "T:", "networkcontroller, 3"},
    };
    for (const auto& [what, entity, unit, root, shown] : cases) {
        FirstControllerWithPorts(2);
        const auto posted = Publish(ToldCard().Numeric(5, entity, unit), 2);
        EXPECT_EQ(posted.order, Texts{"InsertSensor"}) << what;
        EXPECT_EQ(ShowAll(posted.sensors),
                  Texts{root + "NIC.Slot.3_sensorid_ctrl2_5, B3/networkcontroller_2, " + shown})
            << what;
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
        Texts names;
        for (const auto& sensor : Publish(card, 2).sensors) {
            names.push_back(sensor.entityName);
        }
        EXPECT_EQ(names, (Texts{"ethernet3", "ethernet3", "networkcontroller2", "ethernet4",
                                "ethernet4"}));
    }
}

TEST_F(SecondControllerTest, NumbersItsStateSensorsBehindThePortsOfTheFirst) {
    const struct {
        const char* what;
        Entity entity;
        std::string path;
        std::string instance;
    } cases[] = {
        {"a port", {300, 1, 2}, "/networkcontroller_2/ethernet_3", "3"},
        {"a port of another kind", {302, 2, 2}, "/networkcontroller_2/fibre_channel_4", "4"},
        {"a word but no port", {303, 1, 2}, "/networkcontroller_2", "3"},
        {"the first connector", {202, 1, 2}, "/connector_3/sfp_8079_1", "3"},
        {"the lowest connector type", {200, 1, 2}, "/networkcontroller_2/connector_3/rj45_1", "3"},
        {"the highest connector type",
         {299, 1, 2},
         "/networkcontroller_2/connector_3/unkknown_connector_type_1",
         "3"},
        {"the controller", {144, 1, 2}, "/networkcontroller_2", "0"},
        {"the card", {68, 1, 2}, "/networkcontroller_2", "0"},
        {"an accelerator", {149, 1, 2}, "/networkcontroller_2", "0"},
    };
    for (const auto& [what, entity, path, instance] : cases) {
        FirstControllerWithPorts(2);
        const auto posted = Publish(ToldCard().State(9, entity), 2);
        EXPECT_EQ(ShowAll(posted.stateSensors),
                  Texts{"B3" + path + "/sensor/state/sensorid_ctrl2_9, " + instance + ", "})
            << what;
        EXPECT_EQ(posted.stateSensors.at(0).memberNames, (Texts{"Link", "Fault"}));
        EXPECT_EQ(posted.stateSensors.at(0).stateSetNames, (Texts{"Link State", ""}));
    }
}

TEST_F(SecondControllerTest, EachCountGoesOnAndWrapsAfter255) {
    FirstControllerWithPorts(254);
    const auto posted = Publish(ToldCard()
                                    .Numeric(5, {300, 1, 2})
                                    .Numeric(6, {300, 1, 2})
                                    .Numeric(7, {300, 1, 2}, 7)
                                    .Numeric(8, {300, 1, 2}, 7)
                                    .State(1, {202, 1, 2})
                                    .State(2, {300, 1, 2})
                                    .State(3, {210, 1, 2}),
                                2);
    EXPECT_EQ(posted.sensors.at(1).entityName, "ethernet0");
    EXPECT_EQ(posted.sensors.at(3).entityName, "ethernet0");
    EXPECT_EQ(Show(posted.stateSensors.at(2)),
              "B3/connector_0/qsfp_1/sensor/state/sensorid_ctrl2_3, 0, ");
    FirstControllerWithPorts(257);
    EXPECT_EQ(ShowAll(Publish(ToldCard().State(9, {300, 1, 2}), 2).stateSensors),
              Texts{"B3/networkcontroller_2/ethernet_2/sensor/state/sensorid_ctrl2_9, 2, "});
}

TEST_F(SecondControllerTest, OnlyEthernetInfiniBandAndFibreChannelArePorts) {
    Publish(ToldCard()
                .Physical(1, {68, 1, 0}, {{144, 1, 1}})
                .Physical(2, {144, 1, 1}, {{300, 1, 2}, {301, 1, 2}, {302, 1, 2}, {303, 1, 2}})
                .Physical(3, {300, 1, 2}, {{202, 1, 3}})); // the port again, as a container
    const auto posted = Publish(ToldCard().Numeric(5, {300, 1, 2}), 2);
    EXPECT_EQ(posted.sensors.at(0).entityName, "ethernet4");
}

TEST_F(SecondControllerTest, LeavesTheFirstControllerAlone) {
    const auto first = NetworkCard().State(9, {300, 1, 2});
    Publish(first);
    for (int round = 0; round < 3; ++round) {
        const auto posted = Publish(NetworkCard().Numeric(5, {300, 1, 2}), 2);
        EXPECT_EQ(posted.order, Texts{"InsertSensor"});
        EXPECT_EQ(posted.sensors[0].entityName, "ethernet3"); // its own associations don't count
        PublishFlat(first, static_cast<std::uint8_t>(round + 1)); // nor those told without a tree
    }
    EXPECT_EQ(first.data->stateSensors[0].use_count(), 2) << "the tree has let go of its records";
}

TEST_F(SecondControllerTest, WithoutEntitiesASensorBelongsToItsController) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        std::uint16_t type;
        std::string shown;
    } cases[] = {
        {false, 1, 300, "5, B3/networkcontroller_1, networkcontroller, 0"},
        {false, 1, 144, "5, B3/networkcontroller_1, networkcontroller, 0"},
        {false, 1, 204, "5, B3/networkcontroller_1, networkcontroller, 0"},
        {true, 1, 300, "ctrl1_5, B3/networkcontroller_1, networkcontroller, 0"},
        {true, 2, 202, "ctrl2_5, B3/networkcontroller_2, networkcontroller, 0"},
        {true, 2, 144, "ctrl2_5, B3/networkcontroller_2, networkcontroller, 1"},
        {true, 3, 300, "ctrl1_5, B3/networkcontroller_1, networkcontroller, 0"},
    };
    for (const auto& [controllers, controller, type, shown] : cases) {
        Begin(controllers);
        const auto posted = PublishFlat(ToldCard().Numeric(5, {type, 7, 2}), controller);
        EXPECT_EQ(posted.order, Texts{"InsertSensor"});
        EXPECT_EQ(ShowAll(posted.sensors), Texts{"T:NIC.Slot.3_sensorid_" + shown});
    }
}

TEST_F(SecondControllerTest, WithoutEntitiesAStateSensorBelongsToItsController) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        std::uint16_t type;
        std::string shown;
    } cases[] = {
        {false, 1, 144, "/networkcontroller_1/sensor/state/sensorid_9"},
        {false, 1, 202, "/sensor/state/sensorid_9"},
        {false, 1, 200, "/networkcontroller_1/sensor/state/sensorid_9"},
        {false, 1, 299, "/networkcontroller_1/sensor/state/sensorid_9"},
        {true, 1, 300, "/networkcontroller_1/sensor/state/sensorid_ctrl1_9"},
        {true, 2, 300, "/networkcontroller_2/sensor/state/sensorid_ctrl2_9"},
    };
    for (const auto& [controllers, controller, type, shown] : cases) {
        Begin(controllers);
        EXPECT_EQ(ShowAll(PublishFlat(ToldCard().State(9, {type, 7, 2}), controller).stateSensors),
                  Texts{"B3" + shown + ", 0, "});
    }
    const CapturedLog log;
    EXPECT_TRUE(PublishFlat(ToldCard().State(9, {204, 1, 2}), 1).order.empty());
    EXPECT_EQ(log.Count(1, "Invalid/Not supported EntityType: 204\n"), 1);
}

} // namespace
} // namespace vantric::test
