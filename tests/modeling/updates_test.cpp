// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/find_object.hpp"
#include "modeling_fixture.hpp"

#include <algorithm>

namespace vantric::test {
namespace {

using UpdatesTest = ModelingTest;

TEST_F(UpdatesTest, AReadingCarriesTheKeyOfItsSensor) {
    const std::tuple<Controller, const char*, const char*> rows[] = {
        {onlyController, "_sensorid_5", "/sensor/state/sensorid_5"},
        {first, "_sensorid_ctrl1_5", "/sensor/state/sensorid_ctrl1_5"},
        {second, "sensorid_ctrl2_5", "/sensor/state/sensorid_ctrl2_5"},
        {third, "_sensorid_ctrl1_5", "/sensor/state/sensorid_ctrl1_5"},
    };
    for (const auto& [controller, key, stateKey] : rows) {
        modeling->UpdateSensorTempValue(5, -40, SENSOR_KIND_THERMAL, controller);
        modeling->UpdateStateSensorValue({{5, {}}}, controller);
        const auto posted = TakePosted();
        const auto& value = posted.values.at(0);
        EXPECT_EQ(std::tuple(value.pathText, value.value, value.sensorKind, value.controller),
                  std::tuple(key, -40.0, SENSOR_KIND_THERMAL, controller.number));
        const auto& state = posted.states.at(0);
        EXPECT_EQ(std::tuple(state.searchKey, state.controller),
                  std::tuple(stateKey, controller.number));
        EXPECT_EQ(std::tuple(value.deviceLdid, value.slot), std::tuple("NIC.Slot.3", 3));
        EXPECT_EQ(std::tuple(state.deviceLdid, state.slot), std::tuple("NIC.Slot.3", 3));
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
    for (const auto& controller : {onlyController, first, second}) {
        Begin();
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
        StateChange change;
        Texts setNames;
        Texts texts;
    } rows[] = {
        {"a known state", {{2}, {33}, {"A"}}, {"Link State"}, {"Disconnected"}},
        {"an unknown state", {{3}, {33}, {"A"}}, {"Link State"}, {""}},
        {"an unknown set", {{1}, {7}, {"A"}}, {""}, {""}},
        {"a reading that failed", {{0}, {0}, {"A"}}, {""}, {""}},
        {"a set without state",
         {{2, 1}, {33, 13, 13}, {"A", "B", "C"}},
         {"Link State", "Presence"},
         {"Disconnected", "Present"}},
        {"a state without set",
         {{2, 1, 1}, {33, 13}, {"A", "B", "C"}},
         {"Link State", "Presence"},
         {"Disconnected", "Present"}},
    };
    for (const auto& [what, change, setNames, texts] : rows) {
        modeling->UpdateStateSensorValue({{9, change}}, onlyController);
        const auto posted = TakePosted();
        EXPECT_EQ(posted.order, Texts{"SetStateSensorValue"}) << what;
        EXPECT_EQ(posted.states.at(0).memberNames, change.memberNames) << what;
        EXPECT_EQ(posted.states.at(0).stateSetNames, setNames) << what;
        EXPECT_EQ(posted.states.at(0).valueTexts, texts) << what;
        EXPECT_EQ(posted.states.at(0).memberCount, 0) << what;
    }
    modeling->UpdateStateSensorValue({}, onlyController);
    EXPECT_TRUE(TakePosted().order.empty());
}

TEST_F(UpdatesTest, HealthGoesOutBeforeTheSensorThatTellsIt) {
    modeling->UpdateStateSensorValue({{9, {{4, 2, 1, 11}, {1, 33, 1, 1}, {"A", "B", "C", "D"}}}},
                                     onlyController);
    const auto posted = TakePosted();
    constexpr auto health = "UpdateDeviceHealthStatus";
    EXPECT_EQ(posted.order, (Texts{health, health, health, "SetStateSensorValue"}));
    constexpr int severities[] = {5, 2, 1}; // fatal, normal, unknown
    for (std::size_t index = 0; index < posted.healths.size(); ++index) {
        EXPECT_EQ(posted.healths[index].severity, severities[index]);
        EXPECT_EQ(posted.healths[index].deviceLdid, "NIC.Slot.3");
    }
}

TEST_F(UpdatesTest, WhatTheChannelDoesntTakeIsTold) {
    SetPostResult(-7);
    const CapturedLog log;
    modeling->UpdateSensorTempValue(5, 1, 1, onlyController);
    modeling->UpdateStateSensorValue({{9, {{1}, {1}, {"Health"}}}}, onlyController);
    EXPECT_EQ(log.Messages(1),
              (Texts{"OneWayChannel_Execute dbusSetSensorValue ERROR, execRet = -7\n",
                     "OneWayChannel_Execute dbusSetHealthState ERROR, execRet = -7\n"}));
    EXPECT_EQ(log.Messages(4), Texts{"OneWayChannel_Execute ERROR, execRet = -7\n"});
}

} // namespace
} // namespace vantric::test
