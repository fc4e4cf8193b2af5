#include "dbus_handler/find_object.hpp"
#include "modeling_fixture.hpp"

#include <algorithm>

namespace vantric::test {
namespace {

using UpdatesTest = ModelingTest;

TEST_F(UpdatesTest, AReadingCarriesTheKeyOfItsSensor) {
    const struct {
        bool controllers;
        std::uint8_t controller;
        const char* key;
        const char* stateKey;
    } cases[] = {
        {false, 1, "_sensorid_5", "/sensor/state/sensorid_5"},
        {false, 2, "sensorid_ctrl2_5", "/sensor/state/sensorid_5"},
        {true, 1, "_sensorid_ctrl1_5", "/sensor/state/sensorid_ctrl1_5"},
        {true, 2, "sensorid_ctrl2_5", "/sensor/state/sensorid_ctrl2_5"},
        {true, 3, "_sensorid_ctrl1_5", "/sensor/state/sensorid_ctrl1_5"},
    };
    for (const auto& [controllers, controller, key, stateKey] : cases) {
        Begin(controllers);
        modeling->UpdateSensorTempValue(5, -40, SENSOR_KIND_THERMAL, controller);
        modeling->UpdateStateSensorValue({{5, {}}}, controller);
        const auto posted = TakePosted();
        const auto& value = posted.values.at(0);
        EXPECT_EQ(value.pathText, key);
        EXPECT_EQ(value.value, -40.0);
        EXPECT_EQ(value.deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(value.slot, 3);
        EXPECT_EQ(value.sensorKind, SENSOR_KIND_THERMAL);
        EXPECT_EQ(value.controller, controller);
        EXPECT_EQ(posted.states.at(0).searchKey, stateKey);
        EXPECT_EQ(posted.states.at(0).deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(posted.states.at(0).slot, 3);
        EXPECT_EQ(posted.states.at(0).controller, controller);
    }
}

std::string Normalised(std::string path) {
    std::ranges::replace(path, '.', '_');
    std::ranges::replace(path, '-', '_');
    return path;
}

TEST_F(UpdatesTest, AReadingsKeyFindsTheObjectOfItsSensorAndNoOther) {
    const std::vector<std::uint16_t> ids{1, 2, 12, 21, 100, 65535};
    ToldCard card = NetworkCard();
    for (const auto id : ids) {
        card.Numeric(id, {300, 1, 2}).State(id, {300, 1, 2});
    }
    for (const auto& [controllers, controller] :
         {std::pair<bool, std::uint8_t>(false, 1), {true, 1}, {true, 2}}) {
        Begin(controllers);
        const auto made = Publish(card, controller);
        for (std::size_t index = 0; index < ids.size(); ++index) {
            modeling->UpdateSensorTempValue(ids[index], 0, SENSOR_KIND_PROBE, controller);
            modeling->UpdateStateSensorValue({{ids[index], {}}}, controller);
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
    for (const auto& [what, set, state, setName, text] : cases) {
        modeling->UpdateStateSensorValue({{9, {{state}, {set}, {"Member"}}}}, 1);
        const auto posted = TakePosted();
        EXPECT_EQ(posted.order, Texts{"SetStateSensorValue"}) << what;
        EXPECT_EQ(posted.states.at(0).memberNames, Texts{"Member"}) << what;
        EXPECT_EQ(posted.states.at(0).stateSetNames, Texts{setName}) << what;
        EXPECT_EQ(posted.states.at(0).valueTexts, Texts{text}) << what;
        EXPECT_EQ(posted.states.at(0).memberCount, 0) << what;
    }
    modeling->UpdateStateSensorValue({}, 1);
    EXPECT_TRUE(TakePosted().order.empty());
}

TEST_F(UpdatesTest, MembersWithoutStateOrSetGetNoText) {
    for (const auto& [states, sets] :
         {std::pair<std::vector<std::uint8_t>, std::vector<std::uint16_t>>({1, 2, 1}, {33, 33}),
          {{1, 2}, {33, 33, 33}}}) {
        modeling->UpdateStateSensorValue({{9, {states, sets, {"A", "B", "C"}}}}, 1);
        const auto posted = TakePosted();
        EXPECT_EQ(posted.states.at(0).memberNames, (Texts{"A", "B", "C"}));
        EXPECT_EQ(posted.states.at(0).stateSetNames.size(), 2U);
        EXPECT_EQ(posted.states.at(0).valueTexts, (Texts{"Connected", "Disconnected"}));
    }
}

TEST_F(UpdatesTest, HealthGoesOutBeforeTheSensorThatTellsIt) {
    modeling->UpdateStateSensorValue({{9, {{4, 2, 1}, {1, 33, 1}, {"A", "B", "C"}}}}, 1);
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, (Texts{"UpdateDeviceHealthStatus", "UpdateDeviceHealthStatus",
                                   "SetStateSensorValue"}));
    EXPECT_EQ(posted.healths.at(0).severity, 5);
    EXPECT_EQ(posted.healths.at(1).severity, 2);
    EXPECT_EQ(posted.healths.at(1).deviceLdid, "NIC.Slot.3");
}

TEST_F(UpdatesTest, AHealthStateHasASeverity) {
    constexpr int severities[] = {1, 2, 3, 4, 5, 4, 3, 4, 4, 5, 4, 1}; // by state, from 0 on
    for (std::uint8_t state = 0; state < std::size(severities); ++state) {
        modeling->UpdateStateSensorValue({{9, {{state}, {1}, {"Health"}}}}, 1);
        EXPECT_EQ(TakePosted().healths.at(0).severity, severities[state]) << int{state};
    }
}

TEST_F(UpdatesTest, WhatTheChannelDoesntTakeIsTold) {
    SetPostResult(-7);
    const CapturedLog log;
    modeling->UpdateSensorTempValue(5, 1, 1, 1);
    modeling->UpdateStateSensorValue({{9, {{1}, {1}, {"Health"}}}}, 1);
    EXPECT_EQ(log.Messages(1),
              (Texts{"OneWayChannel_Execute dbusSetSensorValue ERROR, execRet = -7\n",
                     "OneWayChannel_Execute dbusSetHealthState ERROR, execRet = -7\n"}));
    EXPECT_EQ(log.Messages(4), Texts{"OneWayChannel_Execute ERROR, execRet = -7\n"});
}

TEST_F(UpdatesTest, ARemovalGivesClientsTime) {
    const CapturedLog log;
    modeling->DeleteDBUSPaths(CLEAR_SENSORS);
    const auto posted = TakePosted();
    EXPECT_EQ(posted.clears.at(0).mode, CLEAR_SENSORS);
    EXPECT_EQ(posted.clears.at(0).slot, 3);
    EXPECT_EQ(posted.clears.at(0).deviceLdid, "NIC.Slot.3");
    EXPECT_EQ(TakePauses(), std::vector{std::chrono::seconds(2)});
    EXPECT_EQ(log.Messages(4), Texts{"DeleteDBUSPaths SUCCESS for slot = 3, execRet = 0\n"});
}

TEST_F(UpdatesTest, ADeviceThatGoesTakesItsObjectsAlong) {
    const auto card = NetworkCard().State(9, {300, 1, 2});
    Publish(card);
    modeling.reset();
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, Texts{"Clear"});
    EXPECT_EQ(posted.clears.at(0).mode, CLEAR_ALL);
    EXPECT_EQ(card.data->stateSensors[0].use_count(), 1);
}

} // namespace
} // namespace vantric::test
