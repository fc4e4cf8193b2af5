// SPDX-License-Identifier: Apache-2.0
/** Where the sensors of a card are shown, and under which names. */
#include "modeling_fixture.hpp"

namespace vantric::test {
namespace {

class PublishedSensorsTest : public ModelingTest {
protected:
    /** Makes a device of two controllers, the first of which has this many ports. */
    void BeginWithPorts(std::uint16_t ports) {
        Begin();
        std::vector<Entity> contained;
        for (std::uint16_t port = 1; port <= ports; ++port) {
            contained.push_back({300, port, 2});
        }
        Publish(
            ToldCard().Physical(1, {68, 1, 0}, {{144, 1, 1}}).Physical(2, {144, 1, 1}, contained));
    }

    Texts EntityNames(const ToldCard& card) {
        Texts names;
        for (const auto& sensor : Publish(card, second).sensors) {
            names.push_back(sensor.entityName);
        }
        return names;
    }

    CapturedLog log;
};

TEST_F(PublishedSensorsTest, StandWhereTheTreeHoldsTheirEntities) {
    for (const auto& controller : {onlyController, first}) {
        Begin();
        const auto card = NetworkCard()
                              .Physical(5, {144, 1, 1}, {{300, 258, 5}})
                              .Numeric(1, {68, 1, 1})
                              .Numeric(2, {300, 1, 2})
                              .Numeric(3, {300, 2, 2}, BASE_UNIT_WATTS)
                              .Numeric(4, {202, 1, 3}, BASE_UNIT_KELVIN)
                              .Numeric(5, {300, 258, 5})
                              .Numeric(6, {80, 4, 9}) // not told of: as those of the card
                              .State(11, {300, 2, 2})
                              .State(12, {202, 1, 3})
                              .State(13, {144, 1, 1})
                              .State(14, {68, 1, 1})
                              .State(15, {149, 6, 9})
                              .State(16, {80, 4, 9});
        const std::string tag = controller.tag == CONTROLLER_1 ? "ctrl1_" : "";
        const std::string port1 = "C/networkcontroller_1/ethernet_1";
        const std::string state = "/sensor/state/sensorid_" + tag;
        EXPECT_EQ(Shown(Publish(card, controller)),
                  (Texts{"T:" + tag + "1 C add_in_card_1 1", "T:" + tag + "6 C add_in_card_1 1",
                         "T:" + tag + "2 " + port1 + " ethernet_1 1",
                         "T:" + tag + "4 " + port1 + "/sfp_8079_1 sfp_8079_1 1",
                         "P:" + tag + "3 C/networkcontroller_1/ethernet_2 ethernet_2 2",
                         "T:" + tag + "5 C/networkcontroller_1/ethernet_258 ethernet_258 2",
                         "C" + state + "14 0 NIC.Slot.3", "C" + state + "15 0 NIC.Slot.3",
                         "C" + state + "16 4 NIC.Slot.3",
                         "C/networkcontroller_1" + state + "13 0 NIC.Slot.3",
                         port1 + "/sfp_8079_1" + state + "12 1 NIC.Slot.3",
                         "C/networkcontroller_1/ethernet_2" + state + "11 2 NIC.Slot.3"}));
        std::vector<int> instances; // as the records have them from now on
        for (const auto& sensor : card.data->stateSensors) {
            instances.push_back(sensor->entityInstanceNumber);
        }
        EXPECT_EQ(instances, (std::vector{2, 1, 0, 0, 6, 4}));
    }
}

TEST_F(PublishedSensorsTest, StandWhereTheirOwnContainerHoldsTheirEntity) {
    const struct {
        const char* what;
        ToldCard card;
        Texts shown;
    } rows[] = {
        {"a container told of before what holds it",
         ToldCard()
             .Physical(1, {68, 1, 0}, {{185, 2, 1}})
             .Physical(2, {144, 1, 7}, {{300, 1, 2}})
             .Physical(7, {185, 2, 1}, {{144, 1, 7}})
             .Numeric(5, {144, 1, 2}),
         {"T:5 C/connector_2/networkcontroller_1 networkcontroller_1 1"}},
        {"a container that nothing holds",
         ToldCard()
             .Physical(1, {68, 1, 0}, {})
             .Physical(2, {144, 1, 7}, {})
             .Numeric(5, {144, 1, 2}),
         {"T:5 C networkcontroller_1 1"}},
        {"contained here, but of another container",
         NetworkCard().Physical(4, {68, 1, 0}, {{300, 2, 2}}).State(9, {300, 2, 4}),
         {"C/networkcontroller_1/ethernet_2/sensor/state/sensorid_9 2 NIC.Slot.3"}},
        {"contained here, but of a container that no entity has",
         NetworkCard().Physical(4, {68, 1, 0}, {{300, 2, 8}}).State(9, {300, 2, 4}),
         {"C/sensor/state/sensorid_9 2 NIC.Slot.3"}},
        {"nodes of the root's type always count",
         ToldCard()
             .Physical(1, {144, 1, 0}, {{144, 2, 1}})
             .Numeric(5, {144, 2, 1})
             .Numeric(6, {144, 1, 1}),
         {"T:6 C networkcontroller_1 1", "T:5 C networkcontroller_2 2"}},
        {"a management module and all above it have no piece",
         ToldCard()
             .Physical(1, {60, 1, 0}, {{63, 1, 1}, {6, 2, 1}})
             .Physical(2, {63, 1, 1}, {{149, 3, 2}})
             .Numeric(5, {149, 3, 2})
             .State(9, {63, 1, 1})
             .State(10, {6, 2, 1}),
         {"T:5 C/accelerator_3 accelerator_3 3", "C/sensor/state/sensorid_9 1 NIC.Slot.3",
          "C/communication_channel/sensor/state/sensorid_10 2 NIC.Slot.3"}},
        {"what has no word or stands twice shows nothing, what is below it does",
         NetworkCard()
             .Physical(4, {144, 1, 1}, {{204, 1, 4}})
             .Physical(5, {204, 1, 4}, {{187, 1, 5}})
             .Numeric(1, {204, 1, 4})
             .State(2, {204, 1, 4})
             .Numeric(3, {300, 1, 3}) // the port as a container
             .State(4, {300, 1, 3})
             .Numeric(5, {187, 1, 5}),
         {"T:5 C/networkcontroller_1/cable_1 cable_1 1"}},
        {"no associations", ToldCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2}), {}},
    };
    for (const auto& [what, card, shown] : rows) {
        EXPECT_EQ(Shown(Publish(card)), shown) << what;
        EXPECT_EQ(log.Messages(1), Texts{}) << what;
    }
}

TEST_F(PublishedSensorsTest, OfAConnectorsModuleTakeItsNumberFromThePath) {
    const struct {
        std::uint16_t connector;
        std::string number; ///< that the module gets; none: it keeps its own
    } rows[] = {{4, "4"}, {255, "255"}, {258, "2"}, {0, ""}, {256, ""}};
    for (const auto& [connector, number] : rows) {
        const auto card = ToldCard()
                              .Physical(1, {68, 1, 0}, {{144, 1, 1}})
                              .Physical(2, {144, 1, 1}, {{185, connector, 2}})
                              .Physical(3, {185, connector, 2}, {{202, 7, 3}})
                              .Numeric(5, {202, 7, 3})
                              .Numeric(6, {202, 7, 3}, BASE_UNIT_WATTS)
                              .State(9, {202, 7, 3});
        const std::string path =
            "C/networkcontroller_1/connector_" + std::to_string(connector) + "/sfp_8079_";
        const std::string instance = number.empty() ? "7" : number;
        const std::string name =
            path + "7 " + (number.empty() ? "sfp_8079_7" : "ethernet_" + number) + " " + instance;
        // By the time of its state sensors the module is found under its new number.
        EXPECT_EQ(Shown(Publish(card)), (Texts{"T:5 " + name, "P:6 " + name,
                                               path + instance + "/sensor/state/sensorid_9 " +
                                                   instance + " NIC.Slot.3"}));
        EXPECT_EQ(std::to_string(card.data->stateSensors[0]->entityInstanceNumber), instance);
    }
}

TEST_F(PublishedSensorsTest, OfASecondControllerAreNumberedAfterThePortsOfTheFirst) {
    const struct {
        Entity entity;
        std::uint8_t unit;
        std::string numeric; ///< root and what follows the inventory path
        std::string state;   ///< what follows the card's path, around the sensor's tail
        std::string instance;
    } rows[] = {
        {{300, 1, 2}, 2, "T ethernet3 3", "/networkcontroller_2/ethernet_3", "3"},
        {{302, 2, 2}, 7, "P fibre_channel3 3", "/networkcontroller_2/fibre_channel_4", "4"},
        {{303, 1, 2}, 4, "T omnipath1 1", "/networkcontroller_2", "3"},
        {{202, 1, 2}, 2, "T ethernet_3 3", "/connector_3/sfp_8079_1", "3"},
        {{200, 1, 2}, 2, "T ethernet_3 3", "/networkcontroller_2/connector_3/rj45_1", "3"},
        {{299, 1, 2},
         7,
         "P ethernet_3 3",
         "/networkcontroller_2/connector_3/unkknown_connector_type_1",
         "3"},
        {{144, 1, 2}, 2, "T networkcontroller2 2", "/networkcontroller_2", "0"},
        {{68, 1, 2}, 7, "P add_in_card3 3", "/networkcontroller_2", "0"},
        {{149, 1, 2}, 4, "T accelerator1 1", "/networkcontroller_2", "0"},
    };
    for (const auto& [entity, unit, numeric, state, instance] : rows) {
        BeginWithPorts(2);
        const auto posted = Publish(ToldCard().Numeric(5, entity, unit).State(9, entity), second);
        EXPECT_EQ(
            Shown(posted),
            (Texts{numeric.substr(0, 1) + ":ctrl2_5 C/networkcontroller_2" + numeric.substr(1),
                   "C" + state + "/sensor/state/sensorid_ctrl2_9 " + instance + " "}));
        EXPECT_EQ(posted.order, (Texts{"InsertSensor", "InsertStateSensor"})) << "nothing removed";
    }
}

TEST_F(PublishedSensorsTest, OfASecondControllerAreCountedByKindAndTheCountWraps) {
    const auto card = ToldCard()
                          .Numeric(1, {300, 1, 2})
                          .Numeric(2, {300, 1, 2}, BASE_UNIT_WATTS)
                          .Numeric(3, {144, 1, 1})
                          .Numeric(4, {300, 2, 2})
                          .Numeric(5, {300, 2, 2}, BASE_UNIT_WATTS)
                          .State(6, {202, 1, 2})
                          .State(7, {300, 1, 2})
                          .State(8, {210, 1, 2});
    for (const auto& [ports, next, after] :
         {std::tuple(2, "3", "4"), {254, "255", "0"}, {257, "2", "3"}}) {
        BeginWithPorts(static_cast<std::uint16_t>(ports));
        for (int round = 0; round < 2; ++round) { // counting begins anew each time
            const std::string one = std::string("ethernet") + next;
            const std::string two = std::string("ethernet") + after;
            EXPECT_EQ(EntityNames(card), (Texts{one, one, "networkcontroller2", two, two}));
        }
        EXPECT_EQ(Short(Publish(card, second).stateSensors.at(2).statePath),
                  std::string("C/connector_") + after + "/qsfp_1/sensor/state/sensorid_ctrl2_8");
    }
}

TEST_F(PublishedSensorsTest, OfASecondControllerLeaveTheFirstOneAlone) {
    // Ports are ethernet, InfiniBand and Fibre Channel; one of them stands again as a container.
    const auto card =
        ToldCard()
            .Physical(1, {68, 1, 0}, {{144, 1, 1}})
            .Physical(2, {144, 1, 1}, {{300, 1, 2}, {301, 1, 2}, {302, 1, 2}, {303, 1, 2}})
            .Physical(3, {300, 1, 2}, {{202, 1, 3}})
            .State(9, {300, 1, 2});
    Publish(card, first);
    for (const auto& controller : {first, second, third}) {
        EXPECT_EQ(EntityNames(NetworkCard().Numeric(5, {300, 1, 2})), Texts{"ethernet4"});
        PublishFlat(card, controller);
    }
    EXPECT_EQ(card.data->stateSensors[0].use_count(), 2) << "the tree holds it too";
    modeling.reset();
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, Texts{"Clear"});
    EXPECT_EQ(posted.clears.at(0).mode, CLEAR_ALL);
    EXPECT_EQ(card.data->stateSensors[0].use_count(), 1);
}

TEST_F(PublishedSensorsTest, WithoutEntitiesBelongToTheirController) {
    const struct {
        Controller controller;
        std::uint16_t type;
        std::string tag;
        std::string numeric; ///< piece of the path and instance
        std::string state;
    } rows[] = {
        {onlyController, 300, "", "1 networkcontroller 0", "/networkcontroller_1"},
        {onlyController, 144, "", "1 networkcontroller 0", "/networkcontroller_1"},
        {onlyController, 202, "", "1 networkcontroller 0", ""},
        {onlyController, 200, "", "1 networkcontroller 0", "/networkcontroller_1"},
        {onlyController, 299, "", "1 networkcontroller 0", "/networkcontroller_1"},
        {first, 300, "ctrl1_", "1 networkcontroller 0", "/networkcontroller_1"},
        {second, 202, "ctrl2_", "2 networkcontroller 0", ""},
        {second, 144, "ctrl2_", "2 networkcontroller 1", "/networkcontroller_2"},
        {third, 144, "ctrl1_", "1 networkcontroller 0", "/networkcontroller_1"},
    };
    for (const auto& [controller, type, tag, numeric, state] : rows) {
        Begin();
        const auto posted =
            PublishFlat(ToldCard().Numeric(5, {type, 7, 2}).State(9, {type, 7, 2}), controller);
        EXPECT_EQ(Shown(posted), (Texts{"T:" + tag + "5 C/networkcontroller_" + numeric,
                                        "C" + state + "/sensor/state/sensorid_" + tag + "9 0 "}));
        EXPECT_EQ(posted.order, (Texts{"InsertSensor", "InsertStateSensor"})) << "nothing removed";
    }
}

TEST_F(PublishedSensorsTest, OfAnEntityWithoutAWordAreLeftOut) {
    const std::string unsupported = "Invalid/Not supported EntityType: 204\n";
    const auto sensors = [](ToldCard card) {
        return card.Numeric(5, {204, 1, 9}).State(9, {204, 1, 9}).State(10, {300, 1, 2});
    };
    const auto inTree = Publish(sensors(NetworkCard()));
    EXPECT_EQ(inTree.order, (Texts{"Clear", "InsertStateSensor"}));
    EXPECT_EQ(log.Messages(1), (Texts{unsupported, unsupported}));
    // On a controller as a whole a numeric sensor needs no word.
    const Texts kept{"T:5 C/networkcontroller_1 networkcontroller 0",
                     "C/networkcontroller_1/sensor/state/sensorid_10 0 "};
    EXPECT_EQ(Shown(PublishFlat(sensors({}), onlyController)), kept);
    BeginWithPorts(2);
    const Texts keptOfSecond{"T:ctrl2_5 C/networkcontroller_2 networkcontroller 3",
                             "C/networkcontroller_2/ethernet_3/sensor/state/sensorid_ctrl2_10 3 "};
    EXPECT_EQ(Shown(Publish(sensors({}), second)), keptOfSecond);
    EXPECT_EQ(log.Count(1, unsupported), 4);
}

TEST_F(PublishedSensorsTest, AreRemovedBeforeATreeIsBuiltAnew) {
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2});
    for (const auto& controller : {first, third, first, onlyController}) {
        const auto posted = Publish(card, controller);
        EXPECT_EQ(posted.order, (Texts{"Clear", "InsertSensor", "InsertStateSensor"}));
        EXPECT_EQ(posted.clears.at(0).mode, CLEAR_SENSORS);
        EXPECT_EQ(posted.clears.at(0).slot, 3);
        EXPECT_EQ(posted.clears.at(0).deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(TakePauses(), std::vector{std::chrono::seconds(2)}) << "for clients to notice";
    }
    EXPECT_EQ(log.Count(4, "DeleteDBUSPaths SUCCESS for slot = 3, execRet = 0\n"), 4);
}

TEST_F(PublishedSensorsTest, AreGoneOnWithWhereTheChannelTakesNothing) {
    SetPostResult(-12);
    const auto card = NetworkCard().Numeric(5, {300, 1, 2}).State(9, {300, 1, 2});
    Publish(card);
    EXPECT_EQ(log.Messages(1), Texts{"DeleteDBUSPaths ERROR for slot = 3, execRet = -12\n"});
    EXPECT_EQ(log.Count(4, "OneWayChannel_Execute ERROR, execRet = -12\n"), 2);
}

TEST_F(PublishedSensorsTest, LogWhereACableLeads) {
    Publish(NetworkCard()
                .Physical(4, {144, 1, 1}, {{187, 1, 4}})
                .Logical(5, {187, 1, 4}, {{300, 2, 2}, {187, 1, 4}}));
    EXPECT_EQ(log.Count(4, "LogicalConnectionTo\n"), 1);
    EXPECT_EQ(log.Count(4, "/networkcontroller_1/ethernet_2\n"), 1);
}

} // namespace
} // namespace vantric::test
