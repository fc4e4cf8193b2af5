// SPDX-License-Identifier: Apache-2.0
/** Accelerators: which sensors are shown, when they are read, and the board that stands for nine.
 */
#include "accelerator/accelerator.hpp"

#include "accelerator/played_sct.hpp"
#include "support/played_device.hpp"

namespace vantric::test {
namespace {

using namespace std::chrono_literals;
class AcceleratorTest : public DeviceClassTest<Accelerator> {
protected:
    AcceleratorTest()
        : DeviceClassTest("/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/",
                          5, "ProcAccelerator.Slot.5-1") {
        sctTable = {.rows = {{}}};
        details.identity = {0x1002, 0x1003, 0x4321, 0x1234};
    }

    /** What the first inventory of a new device with this many of the cards posts. */
    PostedRequests Inventory(std::size_t count = 1) {
        Plug(count, sct);
        return DeviceClassTest::Inventory();
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

    Sct sct;
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
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 1), "1:1 ");
}

TEST_F(AcceleratorTest, StatesAreReadInEverySixthCycleAndTheRestLookedAtInEveryTenth) {
    card.AddState(20, 149);
    Inventory();
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 10), "1:1 7:1 ");
    auto posted = TakePosted();
    EXPECT_EQ(posted.states.size(), 1U) << "changes only";
    EXPECT_EQ(posted.healths.size(), 1U);

    card.firmware = "2.0";
    card.Replace({{.id = 405, .entityType = 149}, {.id = 99, .entityType = 149}});
    EXPECT_EQ(CyclesWith(PLAYED_GET_FIRMWARE, 12), "1:1 11:1 ");
    posted = TakePosted();
    EXPECT_EQ(posted.firmware.at(0).version, "2.0");
    EXPECT_EQ(Shown(posted), "405/1 ");
    EXPECT_EQ(CyclesWith(PLAYED_GET_SENSOR_READING, 1), "1:1 ") << "in its new group";
}

TEST_F(AcceleratorTest, EveryEndpointTellsItsStatesInTheSameCycle) {
    card.AddState(20, 149);
    cards[1].AddState(21, 149);
    Inventory(2);
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 12), "1:1 1:2 7:1 7:2 ");
    EXPECT_EQ(TakePosted().states.size(), 2U) << "the first states of each";
}

class BoardTest : public AcceleratorTest {
protected:
    BoardTest() {
        details.identity = {0x1002, 0x1002, 1, 0x75A3};
        sctTable.rows = {{.identity = {0x1002, 0x75A3, 0x1002, 1}}};
        card.AddEntities(68, {32836, 32917, 149});
    }
};

TEST_F(BoardTest, HasNineObjectsBesidesTheEndpoints) {
    SetPostResult(-12);
    Inventory();
    EXPECT_EQ(log.Count(1, "OneWayChannel_Execute ERROR, execRet = -12\n"), 9);
    SetPostResult(0);
    const auto objects = Inventory().plainInventories;
    EXPECT_EQ(objects.size(), 10U);
    for (const auto& request : objects) {
        EXPECT_EQ((Ids{request.slot, request.identity.deviceId, request.cpuAffinity}),
                  (Ids{5, 0x75A3, 7}));
        EXPECT_EQ(request.deviceLdid, "ProcAccelerator.Slot.5-1");
    }
}

TEST_F(BoardTest, ReadsItsSensorsInEveryCycle) {
    card.Add({.id = 1, .entityType = 32836});
    AddSensors({61}, 7); // of no part that counts
    Inventory();
    for (const int status : {0, 0, 9}) {
        card.sensorStatus[1] = status;
        EXPECT_EQ(Cycle(status), Ids{1});
    }
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
    card.AddState(20, 68);
    cards[1].Add({.id = 1, .entityType = 32836});
    cards[1].AddEntities(68, {32836});
    Inventory(2);
    cards[1].sensorStatus[1] = 3;
    EXPECT_EQ(CyclesWith(PLAYED_GET_STATE_READINGS, 12, 3), "1:1 7:1 ");
}

} // namespace
} // namespace vantric::test
