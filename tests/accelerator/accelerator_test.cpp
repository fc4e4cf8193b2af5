/** Accelerators: which sensors are shown, when they are read, and the board that stands for nine.
 */
#include "accelerator/accelerator.hpp"

#include "accelerator/played_sct.hpp"
#include "support/captured_log.hpp"
#include "support/played_device.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace vantric::test {
namespace {

using namespace std::chrono_literals;
using Ids = std::vector<std::uint16_t>;

const std::string base = "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/";

class AcceleratorTest : public testing::Test {
protected:
    AcceleratorTest() {
        SetClockScale(0);
        sctTable = {.rows = {{}}};
    }

    ~AcceleratorTest() override {
        SetPostResult(0);
        device.reset();
        TakePosted();
        TakePauses();
    }

    /** What the first inventory of a new device in slot 5, with this fixture's card and more,
     *  posts. */
    PostedRequests Inventory(std::vector<PlayedCard*> cards = {}) {
        DeviceDetails details;
        details.identity = identity;
        details.cpuAffinity = 7;
        details.slotNumber = 5;
        details.ldid = "ProcAccelerator.Slot.5-1";
        cards.insert(cards.begin(), &card);
        device.emplace(details, base, cards, sct);
        TakePosted();
        device->InventoryTheDevice();
        TakePauses();
        return TakePosted();
    }

    void AddSensors(const Ids& ids, std::uint8_t baseUnit = 2) {
        for (const auto id : ids) {
            card.Add({.id = id, .entityType = 149, .baseUnit = baseUnit});
        }
    }

    /** The sensors that one cycle reads. */
    Ids Cycle(int status = 0) {
        EXPECT_EQ(device->MonitorTheDevice(), status);
        return card.TakeRead();
    }

    /** The cycles in which the card got the command. */
    std::vector<int> CyclesWith(std::uint16_t command, int cycles, int status = 0) {
        std::vector<int> with;
        card.TakeCount(command);
        for (int cycle = 1; cycle <= cycles; ++cycle) {
            Cycle(status);
            if (card.TakeCount(command) != 0) {
                with.push_back(cycle);
            }
        }
        return with;
    }

    PciIdentity identity{
        .vendorId = 0x1002, .subVendorId = 0x1003, .subDeviceId = 0x4321, .deviceId = 0x1234};
    PlayedCard card;
    CapturedLog log;
    Sct sct;
    std::optional<PlayedDevice<Accelerator>> device;
};

/** Ids and kinds, as posted. */
std::string Shown(const PostedRequests& posted) {
    std::string shown;
    for (const auto& request : posted.sensors) {
        shown += std::to_string(request.sensor.sensorId) + '/' +
                 std::to_string(request.sensor.sensorKind) + ' ';
    }
    return shown;
}

TEST_F(AcceleratorTest, ShowsPowerAndTheTemperaturesOfTheTable) {
    AddSensors({405, 99});
    card.Add({.id = 30, .entityType = 32836});
    AddSensors({60}, 7);
    AddSensors({31}, 4);
    card.AddState(20, 149);
    const auto table = std::exchange(sctTable.rows, {});
    EXPECT_EQ(Shown(Inventory()), "60/3 ") << "the table couldn't be read";
    EXPECT_EQ(device->State(), DEVICE_MONITORING);
    sctTable.rows = table;
    const auto posted = Inventory();
    EXPECT_EQ(Shown(posted), "405/1 30/2 60/3 ");
    EXPECT_EQ(posted.stateSensors.size(), 1U);
    EXPECT_TRUE(posted.controllers.empty());
    EXPECT_EQ(log.Count(4, "Inventory Success for slot 5\n"), 2);
    EXPECT_EQ(log.Count(4, "***************NUMERIC_SENSORS*******************\n"), 2);
    EXPECT_EQ(sctTable.calls, 2);
}

TEST_F(AcceleratorTest, TheAgeOfAGroupDecidesWhetherItIsRead) {
    AddSensors({1, 30, 405});
    const std::vector<std::pair<std::chrono::nanoseconds, Ids>> ages{
        {1s - 1ns, {}},         {1s, {405}},        {10s - 1ns, {405}}, {10s, {405, 30}},
        {20s - 1ns, {405, 30}}, {20s, {405, 30, 1}}};
    for (const auto& [age, read] : ages) {
        Inventory();
        AdvanceClock(age);
        EXPECT_EQ(Cycle(), read) << age.count();
    }
    Inventory();
    std::vector<Ids> cycles;
    for (int cycle = 0; cycle < 5; ++cycle) {
        cycles.push_back(Cycle());
    }
    EXPECT_EQ(cycles, (std::vector<Ids>{{}, {405}, {405, 30}, {405}, {405, 30, 1}}));
    EXPECT_EQ(TakePauses(), std::vector<std::chrono::seconds>(5, 5s));
}

TEST_F(AcceleratorTest, EverySensorHasItsGroup) {
    const Ids medium{30, 31, 32, 45, 46, 47, 48, 375, 376, 377, 378, 406, 407, 408, 409, 410};
    AddSensors(medium, 7);
    AddSensors({29, 33, 44, 49, 374, 379, 404, 411}, 7);
    Inventory();
    AdvanceClock(10s);
    EXPECT_EQ(Cycle(), medium);
}

TEST_F(AcceleratorTest, AGroupThatGivesWayStaysDueAndHandsNothingOn) {
    AddSensors({405, 30, 31});
    AddSensors({406}, 7);
    for (const int status : {8, 9}) {
        card.sensorStatus[31] = status;
        Inventory();
        AdvanceClock(10s);
        EXPECT_EQ(Cycle(), (Ids{405, 30, 31}));
        const auto posted = TakePosted();
        ASSERT_EQ(posted.values.size(), 1U);
        EXPECT_EQ(posted.values.at(0).pathText, "_sensorid_405");
        card.sensorStatus.clear();
        EXPECT_EQ(Cycle(), (Ids{405, 30, 31, 406}));
    }
}

TEST_F(AcceleratorTest, AFailureEndsTheCycleAfterTheGroupsButADisownedSensorDoesNot) {
    AddSensors({1, 30, 31, 405});
    card.AddState(20, 149);
    card.sensorStatus = {{30, 4}, {31, 3}};
    Inventory();
    AdvanceClock(20s);
    EXPECT_EQ(Cycle(3), (Ids{405, 30, 31, 1}));
    EXPECT_EQ(TakePosted().values.size(), 2U) << "those of sensors 1 and 405";
    EXPECT_EQ(log.Count(1, "Monitor failed for slot 5 and error status = 3\n"), 1);
    EXPECT_TRUE(TakePauses().empty());

    card.sensorStatus.clear();
    card.sensorCode[405] = 128; // invalid sensor id
    AdvanceClock(1s);
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 1), std::vector{1});
}

TEST_F(AcceleratorTest, StatesAreReadInEverySixthCycleAndTheRestLookedAtInEveryTenth) {
    card.AddState(20, 149);
    Inventory();
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 10), (std::vector{1, 7}));
    auto posted = TakePosted();
    EXPECT_EQ(posted.states.size(), 1U) << "changes only";
    EXPECT_EQ(posted.healths.size(), 1U);

    card.firmware = "2.0";
    card.Replace({{.id = 405, .entityType = 149}, {.id = 99, .entityType = 149}});
    EXPECT_EQ(CyclesWith(PLAYED_GET_FIRMWARE, 12), (std::vector{1, 11}));
    posted = TakePosted();
    EXPECT_EQ(posted.firmware.at(0).version, "2.0");
    EXPECT_EQ(Shown(posted), "405/1 ");
    EXPECT_EQ(CyclesWith(PLAYED_GET_SENSOR_READING, 1), std::vector{1}) << "in its new group";
}

TEST_F(AcceleratorTest, EveryEndpointTellsItsStatesInTheSameCycle) {
    PlayedCard second;
    card.AddState(20, 149);
    second.AddState(21, 149);
    Inventory({&second});
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 12), (std::vector{1, 7}));
    EXPECT_EQ(second.TakeCount(PLAYED_GET_STATE_READINGS), 2U);
    EXPECT_EQ(TakePosted().states.size(), 2U) << "the first states of each";
}

class BoardTest : public AcceleratorTest {
protected:
    BoardTest() {
        identity = {
            .vendorId = 0x1002, .subVendorId = 0x1002, .subDeviceId = 1, .deviceId = 0x75A3};
        sctTable.rows = {{.identity = {0x1002, 0x75A3, 0x1002, 1}}};
        card.AddEntities(68, {32836, 32917, 149});
    }
};

TEST_F(BoardTest, HasNineInventoryObjects) {
    SetPostResult(-12);
    Inventory();
    EXPECT_EQ(log.Count(1, "OneWayChannel_Execute ERROR, execRet = -12\n"), 9);
    SetPostResult(0);
    const auto posted = Inventory();
    std::vector<std::string> expected{base + "5 ", "/xyz/openbmc_project/inventory/system/UBB "
                                                   "UBB.Integrated.1-1"};
    for (const auto* slot : {"21", "22", "23", "24", "25", "26", "27", "28"}) {
        expected.push_back(base + slot + " ProcAccelerator.Slot." + slot + "-1");
    }
    std::vector<std::string> objects;
    for (const auto& request : posted.plainInventories) {
        objects.push_back(request.objectPath + ' ' + request.resolvedLdid);
        EXPECT_EQ(request.slot, 5);
        EXPECT_EQ(request.deviceLdid, "ProcAccelerator.Slot.5-1");
        EXPECT_EQ(request.identity.deviceId, 0x75A3);
        EXPECT_EQ(request.cpuAffinity, 7);
    }
    EXPECT_EQ(objects, expected);
    identity.deviceId = 0x75A0;
    EXPECT_EQ(Inventory().plainInventories.size(), 10U);
    identity.deviceId = 0x75A1;
    EXPECT_EQ(Inventory().plainInventories.size(), 1U);
}

TEST_F(BoardTest, ShowsOneSensorEightTimesAndMovesTheEightTogetherInEveryCycle) {
    card.Add({.id = 1, .entityType = 32836});
    AddSensors({61}, 7); // of no part that counts
    const auto shown = Inventory().sensors;
    ASSERT_EQ(shown.size(), 8U);
    for (const std::uint8_t value : {66, 67}) {
        card.values[1] = value;
        EXPECT_EQ(Cycle(), Ids{1});
        const auto moved = TakePosted().values;
        ASSERT_EQ(moved.size(), 8U);
        for (std::size_t i = 0; i < 8; ++i) {
            EXPECT_TRUE(shown.at(i).objectPath.ends_with(moved.at(i).pathText));
            EXPECT_EQ(shown.at(i).slot, 21 + i);
            EXPECT_EQ(moved.at(i).value, value);
        }
    }
    card.sensorStatus[1] = 9;
    EXPECT_EQ(Cycle(9), Ids{1});
}

TEST_F(BoardTest, KeepsTheStateSensorsOfItselfAndItsAccelerators) {
    card.AddState(20, 68);
    card.AddState(21, 149);
    card.AddState(22, 32917);
    Ids kept;
    for (const auto& request : Inventory().stateSensors) {
        kept.push_back(request.sensorId);
    }
    EXPECT_EQ(kept, (Ids{20, 22}));
}

TEST_F(BoardTest, ReadsTheFirstEndpointsStatesInTheirCyclesWhileTheSecondOneFails) {
    PlayedCard second;
    card.AddState(20, 68);
    second.Add({.id = 1, .entityType = 32836});
    second.AddEntities(68, {32836});
    Inventory({&second});
    second.sensorStatus[1] = 3;
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 12, 3), (std::vector{1, 7}));
}

} // namespace
} // namespace vantric::test
