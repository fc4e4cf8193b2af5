// SPDX-License-Identifier: Apache-2.0
/** CXL memory: what becomes of its sensors, and when its card is asked. */
#include "memorydevice/memory_device.hpp"

#include "support/played_device.hpp"

namespace vantric::test {
namespace {

using namespace std::chrono_literals;

class MemoryDeviceTest : public DeviceClassTest<MemoryDevice> {
protected:
    MemoryDeviceTest()
        : DeviceClassTest("/xyz/openbmc_project/inventory/system/cxl/memory/Slot/", 2,
                          "CXLMemory.Slot.2") {}
};

TEST_F(MemoryDeviceTest, PollsEveryEndpointShowsTheFirstAndEndsACycleThatFails) {
    card.Add({.id = 5});
    cards[1].Add({.id = 8});
    Plug(2);
    EXPECT_EQ(Inventory().sensors.size(), 1U);
    card.values[5] = 41;
    const auto values = Cycles(1).values;
    EXPECT_EQ(TakePauses(), Pauses{5s});
    EXPECT_EQ(cards[1].TakeRead(), Ids{8});
    ASSERT_EQ(values.size(), 2U);
    EXPECT_EQ(values[0].value, 41);
    EXPECT_EQ(values[0].sensorKind, SENSOR_KIND_THERMAL);
    EXPECT_EQ((Ids{values[0].controller, values[1].controller}), (Ids{1, 1}));

    card.sensorStatus[5] = 3;
    EXPECT_EQ(Cycles(1, 3).values.at(0).value, readingUnavailable);
    EXPECT_EQ(cards[1].TakeRead(), Ids{});
    EXPECT_EQ(TakePauses(), Pauses{});
    EXPECT_EQ(log.Count(1, "Monitor failed for slot 2 and error status = 3\n"), 1);
}

TEST_F(MemoryDeviceTest, AFirmwareUpdateKeepsCommandsAwayAndDoesNotSpin) {
    card.Add({.id = 5});
    Plug(1);
    Inventory();
    device->SetFwUpdateInProgress(true);
    const auto asked = card.Asked();
    Cycles(15);
    device->SetState(DEVICE_INVENTORY);
    device->InventoryTheDevice();
    EXPECT_EQ(device->State(), DEVICE_INVENTORY);
    EXPECT_EQ(card.Asked(), asked);
    EXPECT_EQ(TakePauses(), Pauses(16, 5s));
    device->SetFwUpdateInProgress(false);
    Cycles(1);
    EXPECT_EQ(card.TakeRead(), Ids{5});
}

TEST_F(MemoryDeviceTest, LooksAtTheRepositoryEveryTenCyclesAndShowsNewSensors) {
    card.Add({.id = 5});
    Plug(1);
    Inventory();
    EXPECT_EQ(CyclesWith(PLAYED_GET_REPOSITORY_INFO, 20), "11:1 ");
    TakePosted();
    card.Replace({{.id = 5}, {.id = 9, .entityType = 65}});
    card.TakeCount(PLAYED_GET_FIRMWARE);
    EXPECT_EQ(Cycles(1).order,
              (Texts{"InsertSensor", "InsertSensor", "SetSensorValue", "SetSensorValue"}));
    EXPECT_EQ(card.TakeCount(PLAYED_GET_FIRMWARE), 0U);
}

} // namespace
} // namespace vantric::test
