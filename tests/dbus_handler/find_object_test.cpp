// SPDX-License-Identifier: Apache-2.0
/** Which object a piece of a path finds. */
#include "dbus_handler/find_object.hpp"

#include <gtest/gtest.h>

namespace vantric {

namespace {

struct Row {
    const char* key;
    const char* text;
    bool found;
};

class PathText : public testing::TestWithParam<Row> {};

TEST_P(PathText, FindsTheKey) {
    ObjectStore<int> store;
    store["NIC.Slot.3"][GetParam().key] = std::make_shared<int>(3);
    const auto object = FindObject(store, "NIC.Slot.3", GetParam().text);
    EXPECT_EQ(GetParam().found, object != nullptr) << GetParam().key << " by " << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Rows, PathText,
                         testing::Values(Row{"/s/a_sensorid_1", "/s/a_sensorid_1", true},
                                         Row{"/s/a_sensorid_1", "_sensorid_1", true},
                                         Row{"/s/a_sensorid_12", "_sensorid_1", false},
                                         Row{"/s/a_sensorid_1_x", "a_sensorid_1", true},
                                         Row{"/s/a_sensorid_1/12", "a_sensorid_1", true},
                                         Row{"/s/a_sensorid_1", "_sensorid_12", false},
                                         // Only the first place counts, even if a later one fits.
                                         Row{"/id_12/id_1", "id_1", false}, Row{"/s/a", "b", false},
                                         Row{"", "", true}, Row{"a1", "", true},
                                         Row{"1a", "", false}));

TEST(FindObject, KnowsTheDevice) {
    ObjectStore<int> store;
    store["NIC.Slot.3"]["/a"] = std::make_shared<int>(3);
    store["NIC.Slot.31"]["/a"] = std::make_shared<int>(31);
    EXPECT_EQ(31, *FindObject(store, "NIC.Slot.31", "/a"));
    EXPECT_EQ(nullptr, FindObject(store, "NIC.Slot.", "/a"));
}

TEST(FindObject, GoesOnBehindAKeyThatADigitFollows) {
    ObjectStore<int> store;
    for (int id = 1; id < 200; ++id) {
        store["X"]["/s/x_sensorid_" + std::to_string(id)] = std::make_shared<int>(id);
    }
    for (int id = 1; id < 200; ++id) {
        EXPECT_EQ(id, *FindObject(store, "X", "_sensorid_" + std::to_string(id)));
    }
}

} // namespace

} // namespace vantric
