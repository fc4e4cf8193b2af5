#include "dbus_handler/find_object.hpp"
#include "modeling_fixture.hpp"

#include <algorithm>
#include <tuple>

namespace vantric::test {
namespace {

using UpdatesTest = ModelingTest;

TEST_F(UpdatesTest, AReadingCarriesTheKeyOfItsSensor) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        const char* key;
    } cases[] = {
        {false, 1, "_sensorid_5"},      {false, 2, "sensorid_ctrl2_5"},
        {true, 1, "_sensorid_ctrl1_5"}, {true, 2, "sensorid_ctrl2_5"},
        {true, 3, "_sensorid_ctrl1_5"},
    };
    for (const auto& [controllers, controller, key] : cases) {
        Begin(controllers);
        modeling->UpdateSensorTempValue(5, -40, SENSOR_KIND_THERMAL, controller);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.values.size(), 1U);
        const auto& value = posted.values[0];
        EXPECT_EQ(value.pathText, key);
        EXPECT_EQ(value.value, -40.0);
        EXPECT_EQ(value.deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(value.slot, 3);
        EXPECT_EQ(value.sensorKind, SENSOR_KIND_THERMAL);
        EXPECT_EQ(value.controller, controller);
    }
}

std::string Normalised(std::string path) {
    std::ranges::replace(path, '.', '_');
    std::ranges::replace(path, '-', '_');
    return path;
}

TEST_F(UpdatesTest, AReadingsKeyFindsTheObjectOfItsSensorAndNoOther) {
    for (const auto& [controllers, controller] : {std::pair(false, 1), {true, 1}, {true, 2}}) {
        Begin(controllers);
        ToldCard card = NetworkCard();
        const std::vector<std::uint16_t> ids{1, 2, 12, 21, 100, 65535};
        for (const auto id : ids) {
            card.Numeric(id, {300, 1, 2}).State(id, {300, 1, 2});
        }
        modeling->CreatePDRTree(card.data, static_cast<std::uint8_t>(controller));
        const auto made = TakePosted();
        for (std::size_t index = 0; index < ids.size(); ++index) {
            modeling->UpdateSensorTempValue(ids[index], 0, 1,
                                            static_cast<std::uint8_t>(controller));
            modeling->UpdateStateSensorValue({{ids[index], {}}},
                                             static_cast<std::uint8_t>(controller));
            const auto posted = TakePosted();
            for (std::size_t other = 0; other < ids.size(); ++other) {
                EXPECT_EQ(PathHolds(Normalised(made.sensors.at(other).objectPath),
                                    posted.values.at(0).pathText),
                          other == index);
                EXPECT_EQ(PathHolds(Normalised(made.stateSensors.at(other).statePath),
                                    posted.states.at(0).searchKey),
                          other == index);
            }
        }
    }
}

TEST_F(UpdatesTest, StatesTravelAsTexts) {
    const struct {
        const char* what;
        std::uint16_t set;
        std::uint8_t state;
        const char* setName;
        const char* text;
    } cases[] = {
        {"a known state", 33, 2, "Link State", "Disconnected"},
        {"an unknown state", 33, 3, "Link State", ""},
        {"an unknown set", 7, 1, "", ""},
        {"a reading that failed", 0, 0, "", ""},
        {"a maker's set", 32784, 1, "OEM State Set", "Not Supported"},
        {"the named one of them", 32769, 4, "OEM_State_Set_32769", "In Margin Tool"},
        {"the highest state", 289, 15, "Power-Performance State", "P14"},
    };
    for (const auto& row : cases) {
        modeling->UpdateStateSensorValue({{9, {{row.state}, {row.set}, {"Member"}}}}, 1);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.order, std::vector<std::string>{"dbusSetStateSensorValue"}) << row.what;
        const auto& states = posted.states[0];
        EXPECT_EQ(states.memberNames, std::vector<std::string>{"Member"}) << row.what;
        EXPECT_EQ(states.stateSetNames, std::vector<std::string>{row.setName}) << row.what;
        EXPECT_EQ(states.valueTexts, std::vector<std::string>{row.text}) << row.what;
        EXPECT_EQ(states.memberCount, 0) << row.what;
        EXPECT_EQ(states.deviceLdid, "NIC.Slot.3") << row.what;
        EXPECT_EQ(states.slot, 3) << row.what;
    }
}

TEST_F(UpdatesTest, AStateCarriesTheKeyOfItsSensor) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        const char* key;
    } cases[] = {
        {false, 1, "/sensor/state/sensorid_9"},      {false, 2, "/sensor/state/sensorid_9"},
        {true, 1, "/sensor/state/sensorid_ctrl1_9"}, {true, 2, "/sensor/state/sensorid_ctrl2_9"},
        {true, 3, "/sensor/state/sensorid_ctrl1_9"},
    };
    for (const auto& [controllers, controller, key] : cases) {
        Begin(controllers);
        modeling->UpdateStateSensorValue({{9, {}}}, controller);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.states.size(), 1U);
        EXPECT_EQ(posted.states[0].searchKey, key);
        EXPECT_EQ(posted.states[0].controller, controller);
    }
}

TEST_F(UpdatesTest, MembersWithoutStateOrSetGetNoText) {
    const StateChange uneven{{1, 2, 1}, {33, 33}, {"A", "B", "C"}};
    modeling->UpdateStateSensorValue({{9, uneven}}, 1);
    const auto posted = TakePosted();
    ASSERT_EQ(posted.states.size(), 1U);
    EXPECT_EQ(posted.states[0].memberNames, (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(posted.states[0].stateSetNames.size(), 2U);
    EXPECT_EQ(posted.states[0].valueTexts, (std::vector<std::string>{"Connected", "Disconnected"}));
}

TEST_F(UpdatesTest, NoReadingsMakeNoRequests) {
    modeling->UpdateStateSensorValue({}, 1);
    EXPECT_TRUE(TakePosted().order.empty());
}

TEST_F(UpdatesTest, HealthGoesOutBeforeTheSensorThatTellsIt) {
    modeling->UpdateStateSensorValue({{9, {{4, 2, 1}, {1, 33, 1}, {"A", "B", "C"}}}}, 1);
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, (std::vector<std::string>{"dbusUpdateDeviceHealthStatus",
                                                      "dbusUpdateDeviceHealthStatus",
                                                      "dbusSetStateSensorValue"}));
    EXPECT_EQ(posted.healths[0].severity, 5);
    EXPECT_EQ(posted.healths[1].severity, 2);
    EXPECT_EQ(posted.healths[1].deviceLdid, "NIC.Slot.3");
}

TEST_F(UpdatesTest, AHealthStateHasASeverity) {
    const struct {
        std::uint8_t state;
        int severity;
    } cases[] = {{1, 2}, {2, 3}, {3, 4}, {4, 5},  {5, 4},  {6, 3},
                 {7, 4}, {8, 4}, {9, 5}, {10, 4}, {11, 1}, {0, 1}};
    for (const auto& [state, severity] : cases) {
        modeling->UpdateStateSensorValue({{9, {{state}, {1}, {"Health"}}}}, 1);
        EXPECT_EQ(TakePosted().healths.at(0).severity, severity) << static_cast<int>(state);
    }
}

TEST_F(UpdatesTest, WhatTheChannelDoesntTakeIsTold) {
    SetChannelResult(-7);
    const CapturedLog log;
    modeling->UpdateSensorTempValue(5, 1, 1, 1);
    modeling->UpdateStateSensorValue({{9, {{1}, {1}, {"Health"}}}}, 1);
    EXPECT_EQ(log.Messages(1),
              (std::vector<std::string>{
                  "OneWayChannel_Execute dbusSetSensorValue ERROR, execRet = -7\n",
                  "OneWayChannel_Execute dbusSetHealthState ERROR, execRet = -7\n"}));
    EXPECT_EQ(log.Messages(4),
              std::vector<std::string>{"OneWayChannel_Execute ERROR, execRet = -7\n"});
}

TEST_F(UpdatesTest, ARemovalGivesClientsTime) {
    const CapturedLog log;
    for (const auto mode : {CLEAR_SENSORS, CLEAR_ALL}) {
        modeling->DeleteDBUSPaths(mode);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.clears.size(), 1U);
        EXPECT_EQ(posted.clears[0].mode, mode);
        EXPECT_EQ(posted.clears[0].slot, 3);
        EXPECT_EQ(posted.clears[0].deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(TakePauses(), std::vector{std::chrono::seconds(2)});
    }
    EXPECT_EQ(log.Count(4, "DeleteDBUSPaths SUCCESS for slot = 3, execRet = 0\n"), 2);
}

TEST_F(UpdatesTest, ADeviceThatGoesTakesItsObjectsAlong) {
    const auto card = NetworkCard().State(9, {300, 1, 2});
    Publish(card);
    modeling.reset();
    const auto posted = TakePosted();
    ASSERT_EQ(posted.order, std::vector<std::string>{"dbusClear"});
    EXPECT_EQ(posted.clears[0].mode, CLEAR_ALL);
    EXPECT_EQ(card.data->stateSensors[0].use_count(), 1);
}

} // namespace
} // namespace vantric::test
