// SPDX-License-Identifier: Apache-2.0
/** What endpoint tables and power offs make of the devices that exist. Network devices are real
 *  ones but for their work: an inventory and a cycle keep the device as long as the test wants. */
#include "devicemanager/device_manager.hpp"

#include "common/process_flags.hpp"
#include "devicemanager/played_tables.hpp"
#include "nicdevice/nic_device.hpp"
#include "support/captured_log.hpp"
#include "support/eventually.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"
#include "support/threads.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include <unistd.h>

namespace vantric {

namespace {

std::mutex hookMutex;
std::function<void(Device&)> cycleOfSlot3;

} // namespace

NicDevice::NicDevice(const DeviceDetails& details, const std::string& basePath,
                     const BusDoors& doors)
    : Device(details, basePath, doors) {}

void NicDevice::InventoryTheDevice() {
    FinishInventory();
}

VantricStatus NicDevice::MonitorTheDevice() {
    {
        const auto lock = endpoints.BeginWork();
        std::unique_lock hookLock(hookMutex);
        const auto hook = slotNumber == 3 ? std::exchange(cycleOfSlot3, {}) : nullptr;
        hookLock.unlock();
        if (hook) {
            hook(*this);
        }
    }
    return PauseAfterCycle();
}

namespace test {
namespace {

using Names = std::vector<std::string>;

constexpr auto powerOffLine = "EVENT_POWER_OFF Received deleting the devices\n";
const std::vector<Entry> noDevice{{.pldm = 0}};

class DeviceManagerLife : public testing::Test {
protected:
    DeviceManagerLife() {
        SetClockScale(0.001);
        Catalog() = {};
        Catalog().groups = {{Record(1, 1), Record(2, 1), Record(3, 1), Record(4, 1), Record(5, 99),
                             Record(2, 1, 2)}};
    }

    ~DeviceManagerLife() override {
        Bring(noDevice);
        TakePosted();
        TakePauses();
    }

    /** Network cards in these slots, with the slot as EID. */
    static std::vector<Entry> Cards(const std::vector<std::uint16_t>& slots) {
        std::vector<Entry> entries;
        for (const auto slot : slots) {
            entries.push_back({.slot = slot, .eid = slot});
        }
        return entries;
    }

    /** Delivers a table on this thread. */
    void Bring(const std::vector<Entry>& entries) {
        const PlayedTable table(entries);
        manager.Update(END_POINT_TABLE_UPDATED, table.Delivered());
    }

    static void SwitchHostOffAndOn() {
        ReportHostPower(HOST_POWER_OFF);
        ReportHostPower(HOST_POWER_ON);
    }

    /** Waits until the threads of devices are exactly these. */
    static testing::AssertionResult Live(const Names& wanted) {
        Names names;
        const auto fits = [&] { return (names = ThreadNames("PLDM_")) == wanted; };
        return Eventually(fits) ? testing::AssertionSuccess()
                                : testing::AssertionFailure() << testing::PrintToString(names);
    }

    /** Has the next cycle of the card in slot 3 do this, and waits until it has begun. */
    static void InCycle(const std::function<void(Device&)>& happens) {
        const auto begun = std::make_shared<std::atomic<bool>>(false);
        {
            const std::scoped_lock lock(hookMutex);
            cycleOfSlot3 = [=](Device& device) {
                *begun = true;
                happens(device);
            };
        }
        EXPECT_TRUE(Eventually([&] { return begun->load(); }));
    }

    /** Has this happen where the next table's discovery begins. */
    void InDiscovery(const std::function<void()>& happens) {
        log.OnLine([this, happens](const LogLine& line) {
            if (line.message.starts_with("SlotNu")) {
                log.OnLine({});
                happens();
            }
        });
    }

    int PowerOffsServed() const { return log.Count(4, powerOffLine); }

    CapturedLog log;
    DeviceManager manager{RecordingDoors()};
};

TEST_F(DeviceManagerLife, NamesTheThreadsOfDevicesAndEndsThoseOfTheGone) {
    auto entries = Cards({1, 3, 4});
    entries.push_back({.slot = 2, .slotType = 4, .ldid = "NIC.Embedded.2-1-1"});
    entries[2].vdm = 0; // a device without endpoints is none
    Bring(entries);
    EXPECT_TRUE(Live({"PLDM_EMB_1", "PLDM_Slot_1", "PLDM_Slot_3"}));
    InCycle([](Device& device) {
        EXPECT_TRUE(Eventually([&] { return device.State() == DEVICE_STOPPED; }));
    });
    EXPECT_EQ(TakePosted().order, Names{});
    Bring(Cards({1}));
    EXPECT_TRUE(Live({"PLDM_Slot_1"}));
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, (Names{"Clear", "Clear"}));
    EXPECT_TRUE(std::ranges::count(posted.clears, "NIC.Slot.3", &ClearRequest::deviceLdid) == 1);
    Bring(noDevice);
    EXPECT_EQ(TakePosted().order, (Names{"Clear", "ResetNumbering"}));
}

TEST_F(DeviceManagerLife, KeepsTheEndpointsOfADeviceThatIsMonitoredOverVdm) {
    const Entry vdm{.eid = 11};
    const Entry i2c{.eid = 12, .i2c = 1};
    const Entry nextVdm{.eid = 31};
    const Entry nextI2c{.eid = 32, .i2c = 1};
    const struct {
        std::vector<Entry> now;
        std::vector<Entry> next;
        bool taken;
        DeviceState state = DEVICE_MONITORING;
    } rows[] = {
        {{vdm}, {nextVdm, nextI2c}, false},
        {{vdm, i2c}, {nextI2c}, false},
        {{i2c}, {nextVdm, nextI2c}, true},
        {{vdm}, {nextVdm, nextI2c}, true, DEVICE_STOPPED},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        Bring(row.now);
        InCycle([&](Device& device) { device.SetState(row.state); });
        Bring(row.next);
        EXPECT_TRUE(Live({"PLDM_Slot_3"}));
        EXPECT_EQ(log.Count(1, "Updating EID = 31 for slot 3\n"), row.taken ? 1 : 0);
        Bring(noDevice);
        log.Take();
    }
}

TEST_F(DeviceManagerLife, MakesCommandsGiveWayOnlyWhileATableReachesForADevice) {
    std::vector<std::pair<std::string, bool>> seen;
    log.OnLine([&, table = std::this_thread::get_id()](const LogLine& line) {
        const auto begin = line.message.substr(0, 6);
        if (std::this_thread::get_id() == table && (begin == "SlotNu" || begin == "Index ")) {
            seen.emplace_back(begin, useNewEndPoints);
        }
    });
    for (const std::uint16_t eid : {12, 32}) {
        Bring({{.eid = eid, .i2c = 1}});
        EXPECT_FALSE(useNewEndPoints);
    }
    log.OnLine({});
    EXPECT_EQ(seen, (decltype(seen){{"SlotNu", false},
                                    {"Index ", false}, // a new device
                                    {"SlotNu", false},
                                    {"Index ", true}})); // one that exists
}

TEST_F(DeviceManagerLife, SaysWhichEventItWasTold) {
    for (const auto kind : {FW_UPDATE_START, FW_UPDATE_END, static_cast<EventKind>(3)}) {
        manager.Update(kind, std::string("Event"));
    }
    EXPECT_EQ(log.Messages(4), (Names{"FW_UPDATE_START\n", "FW_UPDATE_END\n"}));
    Bring(Cards({5}));
    EXPECT_EQ(log.Count(4, "END_POINT_TABLE_UPDATED\n"), 1);
}

TEST_F(DeviceManagerLife, ATableComesAfterThePowerOffsThatWereHeardBeforeIt) {
    Bring(Cards({3}));
    log.Take();
    SwitchHostOffAndOn();
    Bring(Cards({3})); // alone it would change nothing
    Bring(Cards({3}));
    EXPECT_EQ(PowerOffsServed(), 1);
    EXPECT_EQ(log.Count(4, "Created PLDMCMD object for slot 3 & eid 3\n"), 1);
    EXPECT_TRUE(Live({"PLDM_Slot_3"}));
}

TEST_F(DeviceManagerLife, TablesComeOneByOneAndLeaveLaterPowerOffsToOthers) {
    Bring(Cards({1}));
    log.Take();
    std::thread second;
    std::atomic<pid_t> thread{0};
    std::atomic<bool> done{false};
    InDiscovery([&] {
        second = std::thread([&] {
            thread = gettid();
            Bring(Cards({1, 3}));
            done = true;
        });
        EXPECT_TRUE(Eventually([&] { return done || (thread != 0 && Sleeps(thread)); }));
        EXPECT_FALSE(done) << "while the first is at work";
        SwitchHostOffAndOn();
    });
    Bring(Cards({1, 2}));
    second.join();
    EXPECT_EQ(PowerOffsServed(), 0);
    EXPECT_TRUE(Live({"PLDM_Slot_1", "PLDM_Slot_3"}));
    Bring(Cards({1, 3}));
    EXPECT_EQ(PowerOffsServed(), 1);
}

/** With the thread that serves power offs, which only an exception ends. */
class DeviceManagerPower : public DeviceManagerLife {
protected:
    DeviceManagerPower() {
        const auto attached = [this] { return log.Count(1, "Failed to attach to MCTP\n") == 1; };
        const auto setReady = [](bool ready) {
            const std::scoped_lock lock(dbusReadyMutex);
            dbusReady = ready;
            dbusReadyCond.notify_all();
        };
        setReady(false);
        std::atomic<pid_t> thread{0};
        server = std::thread([this, &thread] {
            thread = gettid();
            try {
                manager.DevMgrThread();
            } catch (const EndOfThread&) {
            }
        });
        EXPECT_TRUE(Eventually([&] { return thread != 0 && Sleeps(thread); }));
        EXPECT_FALSE(attached()) << "before both signals can be heard";
        setReady(true);
        EXPECT_TRUE(Eventually(attached));
        Bring(Cards({1, 3}));
    }

    ~DeviceManagerPower() override {
        log.OnLine([](const LogLine& line) {
            if (line.message == powerOffLine) {
                throw EndOfThread{};
            }
        });
        ReportHostPower(HOST_POWER_OFF);
        server.join();
        ReportHostPower(HOST_POWER_ON);
        log.OnLine({});
    }

private:
    struct EndOfThread {};
    std::thread server;
};

TEST_F(DeviceManagerPower, OffWhileATableRemovesADeviceIsServedAfterIt) {
    InCycle([](Device& device) {
        EXPECT_TRUE(Eventually([&] { return device.State() == DEVICE_STOPPED; }));
        SwitchHostOffAndOn();
    });
    Bring(Cards({1, 2}));
    EXPECT_TRUE(Live({}));
    EXPECT_EQ(PowerOffsServed(), 1);
    Bring(Cards({1}));
    EXPECT_TRUE(Live({"PLDM_Slot_1"}));
}

TEST_F(DeviceManagerPower, OffThatIsHeardLaterThanATableRemovesWhatItMakes) {
    InDiscovery(SwitchHostOffAndOn);
    Bring(Cards({2, 4}));
    EXPECT_TRUE(Live({}));
    EXPECT_EQ(PowerOffsServed(), 1);
}

TEST_F(DeviceManagerPower, OffWhileDevicesAreRemovedIsHeardAtOnceAndATableComesAfterBoth) {
    std::atomic<bool> heardBoth{false};
    InCycle([&](Device&) {
        SwitchHostOffAndOn();
        EXPECT_TRUE(Eventually([&] { return PowerOffsServed() == 1; }));
        SwitchHostOffAndOn();
        heardBoth = true;
        EXPECT_TRUE(Eventually([] { return useNewEndPoints.load(); })) << "the table is in a hurry";
    });
    EXPECT_TRUE(Eventually([&] { return heardBoth.load(); }));
    Bring(Cards({1}));
    EXPECT_TRUE(Eventually([&] { return PowerOffsServed() == 2; }));
    EXPECT_TRUE(Live({"PLDM_Slot_1"}));
}

} // namespace
} // namespace test
} // namespace vantric
