/** Every way that a device goes from one state to another. */
#include "device/staged_device.hpp"

#include "support/captured_log.hpp"
#include "support/eventually.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace vantric::test {
namespace {

struct Life {
    const char* name;
    const char* now;  ///< endpoints
    const char* next; ///< those in the table that comes in the story
    const char* story;
    std::vector<const char*> log = {};
    DeviceState state = DEVICE_MONITORING; ///< with the story's last step
    const char* ldid = "NIC.Slot.3";
};

constexpr auto warmReboot = "Warm Reboot or VDM communication failed! Use I2C EP for Slot[3]\n";
constexpr auto noI2c = "mI2C_EIDs vector is empty for slot 3\n";
constexpr auto toI2c = "Use I2C EIDs for slot 3\n";
constexpr auto failed = "PLDM Inventory failed for slot 3\n";

class DeviceStates : public testing::TestWithParam<Life> {};

TEST_P(DeviceStates, FollowTheTable) {
    const Life& life = GetParam();
    SetClockScale(0);
    const CapturedLog log;
    Story story(life.story);
    {
        StagedDevice device(life.ldid, life.now, life.next, story);
        EXPECT_EQ(device.State(), DEVICE_CREATED);
        device.Initialize();
        EXPECT_TRUE(story.WaitForEnd());
        device.SetState(DEVICE_STOPPED);
        device.Stop();
        TakePosted();
    }
    EXPECT_EQ(story.Happened(), story.Written());
    EXPECT_EQ(story.LastState(), life.state);
    EXPECT_EQ(TakePosted().clears.size(), 1U) << "its objects go with it";
    const auto lines = log.Lines();
    for (const char* text : life.log) {
        EXPECT_TRUE(std::ranges::count(lines, text, &LogLine::message)) << text;
    }
    const bool gaveUp = std::string(life.story).find("I11=9") == std::string::npos;
    EXPECT_TRUE(gaveUp || log.Count(1, failed) == 0);
    TakePauses();
}

INSTANTIATE_TEST_SUITE_P(
    Inventory, DeviceStates,
    testing::Values(
        Life{"Done", "v11", "", "2 I11 M11 M11"},
        Life{"VdmByAddress",
             "v24 v11",
             "",
             "2 I11,24 M11,24",
             {"=== Controller EID Map for slot 3 ===\n", "Index 0  ->  EID 11\n",
              "Index 1  ->  EID 24\n", "=== End of Controller EID Map ===\n"}},
        Life{"EmbeddedByInstance",
             "v14 v21",
             "",
             "2 I21,14 M21,14",
             {"Device is Embedded sort using instance number instead of BDF\n"},
             DEVICE_MONITORING,
             "NIC.Embedded.1"},
        Life{"FailedOverVdm",
             "v11 i12",
             "",
             "2 I11=4 2 I12 M12",
             {failed, toI2c, "Updating EID = 12 for slot 3\n"}},
        Life{"FailedWithoutI2c", "v11", "", "2 I11=4 10 10 10", {noI2c}, DEVICE_SWITCH_TO_I2C},
        Life{"FailedOverI2c", "i12", "", "2 I12=4 10 10", {failed}, DEVICE_SWITCH_TO_I2C},
        Life{"FailedOverBoth", "v11 i12", "", "2 I11=4 2 I12=4 10 10", {}, DEVICE_SWITCH_TO_I2C},
        Life{"GivesWayToAnotherDevicesTable",
             "v11 i12",
             "",
             "2 I11=9 5 2 I11 M11",
             {"Use new end points\n"}},
        Life{"GivesWayToItsTable",
             "v11 i12",
             "v31",
             "2 I11=9! 5 2 I31 M31",
             {"Use new end points\n"}},
        Life{"FailsJustBeforeItsTable", "v11 i12", "v31", "2 I11=4! 5 2 I31 M31"},
        Life{"EndsJustBeforeItsTable", "i12", "v31", "2 I12! M31"},
        Life{"EndsJustBeforeATableForSeveral", "i12 i23", "v31 v42", "2 I12,23! 2 I31,42 M31,42"},
        Life{"EndsJustBeforeAnotherOrderOfSeveral", "v11 v24", "v24 v13",
             "2 I11,24! 2 I13,24 M13,24"},
        Life{"EndsJustBeforeTheSameTableForSeveral", "v11 v24", "v24 v11", "2 I11,24! M11,24"}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Monitoring, DeviceStates,
    testing::Values(
        Life{"RepositoryChanged", "v11", "", "2 I11 M11=10 2 I11 M11"},
        Life{"GivesWay", "v11", "", "2 I11 M11=9 5 M11"},
        Life{"RefusedOrNotReady",
             "v11",
             "",
             "2 I11 M11=11 M11=12 M11",
             {"Device is either not ready or command failed status = 11\n",
              "Device is either not ready or command failed status = 12\n"}},
        Life{"VdmFails", "v11 i12", "", "2 I11 M11=3 M12", {warmReboot, toI2c}},
        Life{"VdmFailsInADiscovery", "v11 i12", "", "2 I11 M11=8 M12", {warmReboot, toI2c}},
        Life{"VdmOfSeveralFails",
             "v11 v24 i23 i12",
             "",
             "2 I11,24 M11,24=1 2 I12,23 M12,23",
             {warmReboot}},
        Life{"OfTwoI2cWithOneNameTheLaterCounts",
             "v11 v24 i12 i22",
             "",
             "2 I11,24 M11,24=3 M22,24",
             {"Index 0  ->  EID 22\n"}},
        Life{"VdmFailsWithoutI2c", "v11", "", "2 I11 M11=4 5*25 M11", {warmReboot, noI2c}},
        Life{"VdmFailsTwiceWithoutI2c",
             "v11",
             "",
             "2 I11 M11=4 5*25 M11=4 5",
             {"Device in Slot 3 waiting 115 seconds before next monitor attempt\n",
              "Device in Slot 3 waiting 0 seconds before next monitor attempt\n"},
             DEVICE_WAITING},
        Life{"I2cFails", "i12", "", "2 I12 M12=5 5*25 M12=3 5", {}, DEVICE_WAITING},
        Life{"I2cFailsInADiscovery",
             "i12",
             "",
             "2 I12 M12=8 5",
             {warmReboot, "Device is already using I2C EP\n"},
             DEVICE_WAITING}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    NewTable, DeviceStates,
    testing::Values(
        Life{"ComesInTheFirstPauseOfAnInventory", "v11", "v31", "2! I31 M31"},
        Life{"EndsTheSwitch", "i12", "i32", "2 I12=4 10! 2 I32 M32"},
        Life{"EndsTheWait", "i12", "v31", "2 I12 M12=3 5 5! M31"},
        Life{"EndsTheWaitInItsLastPause", "i12", "v31", "2 I12 M12=3 5*24 5! M31"},
        Life{"EndsTheWaitOfSeveral", "i12 i23", "v31 v42", "2 I12,23 M12,23=3 5! 2 I31,42 M31,42"},
        Life{"MovesAMonitoredDevice", "i12", "i32", "2 I12 M12! M32"},
        Life{"MakesSeveralBeginAnew", "i12 i23", "v31 v42", "2 I12,23 M12,23! 2 I31,42 M31,42"},
        Life{"LeavesASurplusEndpointUnasked", "i12", "v31 v42", "2 I12 M12! 2 I31 M31"},
        Life{"MakesAFailureOfTheOldOnesCountForNothing", "v11 i12", "v31 i32", "2 I11 M11=3! M31"}),
    [](const auto& info) { return info.param.name; });

TEST(DeviceStop, StoppedOnlySleeps) {
    SetClockScale(0);
    Story story("2 I12 M12");
    StagedDevice device("NIC.Slot.3", "i12", "", story);
    device.Initialize();
    ASSERT_TRUE(story.WaitForEnd());
    TakePauses();
    device.SetState(DEVICE_STOPPED);
    EXPECT_TRUE(Eventually([] { return TakePauses().size() > 3; })) << "a cycle makes none";
    EXPECT_EQ(device.State(), DEVICE_STOPPED);
    device.Stop();
}

} // namespace
} // namespace vantric::test
