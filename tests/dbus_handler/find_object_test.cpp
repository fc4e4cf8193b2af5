// SPDX-License-Identifier: Apache-2.0
/** Which object a piece of a path finds. */
#include "dbus_handler/find_object.hpp"

#include <gtest/gtest.h>

#include <tuple>

namespace vantric {

namespace {

TEST(FindObject, FindsTheKeyByItsText) {
    const std::tuple<const char*, const char*, bool> rows[] = {
        {"/s/a_sensorid_1", "/s/a_sensorid_1", true},
        {"/s/a_sensorid_1", "_sensorid_1", true},
        {"/s/a_sensorid_12", "_sensorid_1", false},
        {"/s/a_sensorid_1_x", "a_sensorid_1", true},
        {"/s/a_sensorid_1/12", "a_sensorid_1", true},
        {"/s/a_sensorid_1", "_sensorid_12", false},
        {"/id_12/id_1", "id_1", false}, // only the first place counts, even if a later one fits
        {"/s/a", "b", false},
        {"", "", true},
        {"a1", "", true},
        {"1a", "", false}};
    for (const auto& [key, text, found] : rows) {
        ObjectStore<int> store;
        store["NIC.Slot.3"][key] = std::make_shared<int>(3);
        EXPECT_EQ(found, FindObject(store, "NIC.Slot.3", text) != nullptr) << key << " by " << text;
    }
}

TEST(FindObject, KnowsTheDeviceAndGoesOnAfterAKeyThatADigitFollows) {
    ObjectStore<int> store;
    for (int id = 1; id < 200; ++id) {
        const auto path = "/s/x_sensorid_" + std::to_string(id);
        store["NIC.Slot.3"][path] = std::make_shared<int>(id);
        store["NIC.Slot.31"][path] = std::make_shared<int>(-id);
    }
    for (int id = 1; id < 200; ++id) {
        const auto text = "_sensorid_" + std::to_string(id);
        EXPECT_EQ(id, *FindObject(store, "NIC.Slot.3", text));
        EXPECT_EQ(-id, *FindObject(store, "NIC.Slot.31", text));
    }
    EXPECT_EQ(nullptr, FindObject(store, "NIC.Slot.", "_sensorid_1"));
}

} // namespace

} // namespace vantric
