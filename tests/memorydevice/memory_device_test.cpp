/** CXL memory: what becomes of its sensors, and when its card is asked. */
#include "memorydevice/memory_device.hpp"

#include "common/process_flags.hpp"
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
using Pauses = std::vector<std::chrono::seconds>;

const std::string base = "/xyz/openbmc_project/inventory/system/cxl/memory/Slot/";
const std::string temperatures = "/xyz/openbmc_project/sensors/temperature/";
const std::string powers = "/xyz/openbmc_project/sensors/power/";

class MemoryDeviceTest : public testing::Test {
protected:
    MemoryDeviceTest() { SetClockScale(0); }

    ~MemoryDeviceTest() override {
        useNewEndPoints = false;
        device.reset();
        TakePosted();
        TakePauses();
    }

    /** What the first inventory of a device with this fixture's card, and more, posts. */
    PostedRequests Inventory(std::vector<PlayedCard*> cards = {}) {
        DeviceDetails details;
        details.identity = {.vendorId = 1, .subVendorId = 2, .subDeviceId = 3, .deviceId = 4};
        details.cpuAffinity = 7;
        details.slotNumber = 2;
        details.ldid = "CXLMemory.Slot.2";
        cards.insert(cards.begin(), &card);
        device.emplace(details, base, cards);
        device->InventoryTheDevice();
        return TakePosted();
    }

    PlayedCard card;
    CapturedLog log;
    std::optional<PlayedDevice<MemoryDevice>> device;
};

TEST_F(MemoryDeviceTest, NamesSensorsByUnitAndEntityAndLeavesOutThoseWithoutAWord) {
    card.Add({.id = 70, .entityType = 65, .entityInstance = 3});
    card.Add({.id = 2, .entityType = 67});
    card.Add({.id = 6, .entityType = 143, .baseUnit = 7});
    card.Add({.id = 300, .entityType = 66, .baseUnit = 4});
    std::vector<std::string> shown;
    for (const auto& [sensor, path, ldid, inventory, entity, resolved, slot, identity, affinity] :
         Inventory().sensors) {
        shown.push_back(path + ' ' + entity + ' ' + std::to_string(sensor.entityInstance) +
                        " kind " + std::to_string(sensor.sensorKind));
    }
    EXPECT_EQ(shown,
              (std::vector{temperatures + "CXLMemory.Slot.2_sensorid_70 memory_board 3 kind 2",
                           powers + "CXLMemory.Slot.2_sensorid_6 memory_controller 1 kind 3",
                           temperatures + "CXLMemory.Slot.2_sensorid_300 memory_module 1 kind 0"}));
    EXPECT_EQ(log.Count(1, "Invalid/Not supported EntityType: 67\n"), 1);
    EXPECT_EQ(log.Count(4, "***************NUMERIC_SENSORS*******************\n"), 1);
    EXPECT_EQ(device->State(), DEVICE_MONITORING);
}

TEST_F(MemoryDeviceTest, APostCarriesTheThresholdsAndNothingOfTheCardsIdentity) {
    card.Add({.id = 5});
    const auto request = Inventory().sensors.at(0);
    const auto& sensor = request.sensor;
    EXPECT_EQ((std::vector{sensor.upperFatal, sensor.upperCritical, sensor.upperWarning,
                           sensor.lowerWarning, sensor.lowerCritical, sensor.lowerFatal}),
              (std::vector<std::int64_t>{100, 90, 80, 10, 8, 6}));
    EXPECT_EQ(sensor.temperature, 0) << "an object begins without a reading";
    EXPECT_EQ(request.deviceLdid, "CXLMemory.Slot.2");
    EXPECT_EQ(request.inventoryPath, base + "2");
    EXPECT_EQ(request.resolvedLdid, "");
    EXPECT_EQ(request.slot, 2);
    EXPECT_EQ(request.identity.vendorId + request.identity.deviceId + request.cpuAffinity, 0);
}

TEST_F(MemoryDeviceTest, AFailedInventoryChangesToI2cOrTriesTheNewEndpoints) {
    card.commandStatus[PLAYED_GET_TYPES] = 3;
    Inventory();
    EXPECT_EQ(device->State(), DEVICE_SWITCH_TO_I2C);
    EXPECT_EQ(log.Count(1, "PLDM Inventory failed for slot 2\n"), 1);
    TakePauses();
    useNewEndPoints = true;
    device->InventoryTheDevice();
    EXPECT_EQ(device->State(), DEVICE_INVENTORY);
    EXPECT_EQ(TakePauses(), (Pauses{2s, 5s}));
}

TEST_F(MemoryDeviceTest, PollsEveryEndpointShowsTheFirstAndEndsACycleThatFails) {
    PlayedCard second;
    card.Add({.id = 5});
    second.Add({.id = 8});
    EXPECT_EQ(Inventory({&second}).sensors.size(), 1U);
    TakePauses();
    card.values[5] = 41;
    EXPECT_EQ(device->MonitorTheDevice(), 0);
    EXPECT_EQ(second.TakeRead(), Ids{8});
    EXPECT_EQ(TakePauses(), Pauses{5s});
    const auto posted = TakePosted();
    ASSERT_EQ(posted.values.size(), 2U);
    EXPECT_EQ(posted.values.at(0).value, 41);
    EXPECT_EQ(posted.values.at(0).sensorKind, SENSOR_KIND_THERMAL);
    EXPECT_EQ(posted.values.at(0).controller, 1);
    EXPECT_EQ(posted.values.at(1).controller, 1);

    card.sensorStatus[5] = 3;
    EXPECT_EQ(device->MonitorTheDevice(), 3);
    EXPECT_EQ(TakePosted().values.at(0).value, readingUnavailable);
    EXPECT_EQ(second.TakeRead(), Ids{});
    EXPECT_EQ(TakePauses(), Pauses{});
    EXPECT_EQ(log.Count(1, "Monitor failed for slot 2 and error status = 3\n"), 1);
}

TEST_F(MemoryDeviceTest, AFirmwareUpdateKeepsCommandsAwayAndDoesNotSpin) {
    card.Add({.id = 5});
    Inventory();
    TakePauses();
    device->SetFwUpdateInProgress(true);
    const auto asked = card.Asked();
    for (int cycle = 0; cycle < 15; ++cycle) {
        EXPECT_EQ(device->MonitorTheDevice(), 0);
    }
    device->SetState(DEVICE_INVENTORY);
    device->InventoryTheDevice();
    EXPECT_EQ(device->State(), DEVICE_INVENTORY);
    EXPECT_EQ(card.Asked(), asked);
    EXPECT_EQ(TakePauses(), Pauses(16, 5s));
    device->SetFwUpdateInProgress(false);
    EXPECT_EQ(device->MonitorTheDevice(), 0);
    EXPECT_EQ(card.TakeRead(), Ids{5});
}

TEST_F(MemoryDeviceTest, LooksAtTheRepositoryEveryTenCyclesAndShowsNewSensors) {
    card.Add({.id = 5});
    Inventory();
    card.Replace({{.id = 5}, {.id = 9, .entityType = 65}});
    card.TakeCount(PLAYED_GET_REPOSITORY_INFO);
    card.TakeCount(PLAYED_GET_FIRMWARE);
    std::vector<int> looks;
    for (int cycle = 1; cycle <= 25; ++cycle) {
        device->MonitorTheDevice();
        if (card.TakeCount(PLAYED_GET_REPOSITORY_INFO) != 0) {
            looks.push_back(cycle);
        }
    }
    EXPECT_EQ(looks, (std::vector{11, 21}));
    EXPECT_EQ(card.TakeCount(PLAYED_GET_FIRMWARE), 0U);
    const auto posted = TakePosted();
    EXPECT_EQ(posted.sensors.size(), 2U);
    EXPECT_EQ(posted.values.size(), 3U) << "each record had a first reading";
    EXPECT_TRUE(posted.clears.empty());
}

} // namespace
} // namespace vantric::test
