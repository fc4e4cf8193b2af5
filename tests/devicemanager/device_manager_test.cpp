/** What endpoint tables and power offs make of the devices that exist. */
#include "devicemanager/device_manager.hpp"

#include "common/process_flags.hpp"
#include "devicemanager/minimal_nic.hpp"
#include "devicemanager/played_tables.hpp"
#include "support/captured_log.hpp"
#include "support/eventually.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"
#include "support/threads.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <latch>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include <sched.h>
#include <unistd.h>

namespace vantric::test {
namespace {

using Names = std::vector<std::string>;
using Eids = std::vector<std::uint16_t>;

constexpr auto powerOffLine = "EVENT_POWER_OFF Received deleting the devices\n";

class DeviceManagerLife : public testing::Test {
protected:
    DeviceManagerLife() {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1); // nobody asks it
        SetClockScale(0.001);
        Catalog() = {};
        Catalog().groups = {{Record(1, 1), Record(2, 1), Record(3, 1), Record(4, 1), Record(5, 1),
                             Record(2, 1, 2)}};
        OnStep([this](const NicStep& step) { Note(step); });
    }

    ~DeviceManagerLife() override {
        OnStep({});
        Bring({{.pldm = 0}}); // shows no device
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

    /** Waits until the threads of devices are exactly those of one of these lists. */
    static testing::AssertionResult Live(const std::vector<Names>& lists) {
        Names names;
        const auto fits = [&] {
            names = ThreadNames("PLDM_");
            return std::ranges::find(lists, names) != lists.end();
        };
        return Eventually(fits) ? testing::AssertionSuccess()
                                : testing::AssertionFailure() << testing::PrintToString(names);
    }

    int PowerOffsServed() const { return log.Count(4, powerOffLine); }

    void Note(const NicStep& step) {
        const std::scoped_lock lock(stepsMutex);
        latest[step.slot] = step.eids;
    }

    /** Waits for the next monitor cycle of the slot's device, and returns whom it asks. */
    Eids NextEids(std::uint16_t slot) {
        {
            const std::scoped_lock lock(stepsMutex);
            latest.clear();
        }
        EXPECT_TRUE(Eventually([&] {
            const std::scoped_lock lock(stepsMutex);
            return latest.contains(slot);
        }));
        const std::scoped_lock lock(stepsMutex);
        return latest[slot];
    }

    CapturedLog log;
    DeviceManager manager{RecordingDoors()};

private:
    std::mutex stepsMutex;
    std::map<std::uint16_t, Eids> latest; ///< whom a slot's device asked last
};

TEST_F(DeviceManagerLife, NamesTheThreadsOfDevicesAndEndsThoseOfTheGone) {
    std::atomic<bool> goes{false};
    std::atomic<bool> inside{false};
    OnStep([&](const NicStep& step) {
        if (step.slot == 3 && goes) {
            inside = true;
            EXPECT_TRUE(Eventually([&] { return step.device.State() == DEVICE_STOPPED; }));
        }
    });
    auto entries = Cards({1, 3});
    entries.push_back({.slot = 2, .slotType = 4, .ldid = "NIC.Embedded.2-1-1"});
    Bring(entries);
    EXPECT_TRUE(Live({{"PLDM_EMB_1", "PLDM_Slot_1", "PLDM_Slot_3"}}));
    goes = true;
    ASSERT_TRUE(Eventually([&] { return inside.load(); }));
    EXPECT_TRUE(TakePosted().clears.empty());
    Bring(Cards({1}));
    EXPECT_TRUE(Live({{"PLDM_Slot_1"}}));
    std::vector<std::string> cleared;
    for (const auto& clear : TakePosted().clears) {
        cleared.push_back(clear.deviceLdid);
    }
    EXPECT_EQ(cleared.size(), 2U);
    EXPECT_TRUE(std::ranges::count(cleared, "NIC.Slot.3") == 1);
}

TEST_F(DeviceManagerLife, KeepsTheEndpointsOfADeviceThatIsMonitoredOverVdm) {
    const Entry vdm{.eid = 11};
    const Entry i2c{.eid = 12, .i2c = 1};
    const Entry nextVdm{.eid = 31};
    const Entry nextI2c{.eid = 32, .i2c = 1};
    const struct {
        const char* name;
        std::vector<Entry> now;
        std::vector<Entry> next;
        Eids kept;
        bool inItsInventory = false;
    } rows[] = {
        {"monitored over VDM", {vdm}, {nextVdm, nextI2c}, {11}},
        {"monitored over VDM, offered I2C only", {vdm, i2c}, {nextI2c}, {11}},
        {"monitored over I2C", {i2c}, {nextVdm, nextI2c}, {31}},
        {"in its inventory", {vdm}, {nextVdm, nextI2c}, {31}, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::atomic<bool> begun{false};
        std::atomic<bool> read{false};
        OnStep([&, table = gettid()](const NicStep& step) {
            if (step.inventory && row.inItsInventory) {
                begun = true;
                // Until the table's thread waits for this device, and for nothing else.
                EXPECT_TRUE(Eventually([&] { return read && useNewEndPoints && Sleeps(table); }));
            }
            begun = begun || !step.inventory;
            Note(step);
        });
        Bring(row.now);
        ASSERT_TRUE(Eventually([&] { return begun.load(); }));
        InNextRead([&] { read = true; });
        Bring(row.next);
        EXPECT_EQ(NextEids(3), row.kept);
        EXPECT_TRUE(Live({{"PLDM_Slot_3"}}));
        EXPECT_EQ(log.Count(1, "Updating EID = 31 for slot 3\n"), row.kept == Eids{31} ? 1 : 0);
        Bring({{.pldm = 0}});
        log.Take();
    }
}

TEST_F(DeviceManagerLife, MakesCommandsGiveWayOnlyWhileATableReachesForADevice) {
    std::vector<std::pair<std::string, bool>> seen;
    const auto see = [&](const std::string& where) { seen.emplace_back(where, useNewEndPoints); };
    log.OnLine([&, table = std::this_thread::get_id()](const LogLine& line) {
        if (line.function == "Update_Controller_EID_Map" && line.message.starts_with("Index") &&
            std::this_thread::get_id() == table) {
            see(line.message);
        }
    });
    for (const std::uint16_t eid : {12, 32}) {
        InNextRead([&] { see("discovery"); });
        Bring({{.eid = eid, .i2c = 1}});
        see("end");
        NextEids(3);
    }
    log.OnLine({});
    EXPECT_EQ(seen, (decltype(seen){{"discovery", false},
                                    {"Index 0  ->  EID 12\n", false}, // a new device
                                    {"end", false},
                                    {"discovery", false},
                                    {"Index 0  ->  EID 32\n", true}, // one that exists
                                    {"end", false}}));
}

TEST_F(DeviceManagerLife, NobodyGetsTheDevicesBeforeCommandsStopGivingWay) {
    // The table's thread runs when nothing else wants to, and who waits for the devices on the same
    // processor: it goes on as soon as they are free, before the table's thread does.
    const int processor = sched_getcpu();
    const auto beginOnIt = [processor](std::atomic<pid_t>& thread, int policy) {
        cpu_set_t set;
        CPU_ZERO(&set);
        CPU_SET(processor, &set);
        const sched_param parameter{};
        EXPECT_EQ(sched_setaffinity(0, sizeof(set), &set), 0);
        EXPECT_EQ(sched_setscheduler(0, policy, &parameter), 0);
        thread = gettid();
    };
    Bring({{.eid = 12, .i2c = 1}});
    std::atomic<bool> kept{false};
    std::atomic<bool> free{false};
    OnStep([&](const NicStep&) {
        kept = true;
        EXPECT_TRUE(Eventually([&] { return free.load(); }));
    });
    ASSERT_TRUE(Eventually([&] { return kept.load(); }));
    std::atomic<pid_t> tableId{0};
    std::thread table([&] {
        beginOnIt(tableId, SCHED_IDLE);
        Bring({{.eid = 32, .i2c = 1}});
    });
    EXPECT_TRUE(Eventually([&] {
        return log.Count(4, "END_POINT_TABLE_UPDATED\n") == 2 && useNewEndPoints && Sleeps(tableId);
    }));
    std::atomic<pid_t> waiterId{0};
    bool givesWay = false;
    std::thread waiter([&] {
        beginOnIt(waiterId, SCHED_OTHER);
        manager.Update(FW_UPDATE_START, std::string("Event"));
        givesWay = useNewEndPoints;
    });
    EXPECT_TRUE(
        Eventually([&] { return log.Count(4, "FW_UPDATE_START\n") == 1 && Sleeps(waiterId); }));
    free = true;
    waiter.join();
    table.join();
    EXPECT_FALSE(givesWay);
}

TEST_F(DeviceManagerLife, SaysWhichEventItWasTold) {
    const std::pair<EventKind, const char*> rows[] = {{FW_UPDATE_START, "FW_UPDATE_START\n"},
                                                      {FW_UPDATE_END, "FW_UPDATE_END\n"},
                                                      {static_cast<EventKind>(3), nullptr}};
    for (const auto& [kind, line] : rows) {
        log.Take();
        manager.Update(kind, std::string("Event"));
        EXPECT_EQ(log.Messages(4), line != nullptr ? Names{line} : Names{});
    }
    Bring(Cards({1}));
    EXPECT_EQ(log.Count(4, "END_POINT_TABLE_UPDATED\n"), 1);
}

TEST_F(DeviceManagerLife, ATableComesBehindThePowerOffsThatWereHeardBeforeIt) {
    Bring(Cards({3}));
    log.Take();
    SwitchHostOffAndOn();
    Bring(Cards({3})); // alone it would change nothing
    Bring(Cards({3}));
    EXPECT_EQ(PowerOffsServed(), 1);
    EXPECT_EQ(log.Count(4, "Created PLDMCMD object for slot 3 & eid 3\n"), 1);
    EXPECT_TRUE(Live({{"PLDM_Slot_3"}}));
}

TEST_F(DeviceManagerLife, TablesComeOneByOneAndLeaveLaterPowerOffsToOthers) {
    Bring(Cards({1}));
    log.Take();
    std::thread second;
    std::atomic<bool> done{false};
    InNextRead([&] {
        std::atomic<pid_t> thread{0};
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
    EXPECT_TRUE(Live({{"PLDM_Slot_1", "PLDM_Slot_3"}}));
    Bring(Cards({1, 3}));
    EXPECT_EQ(PowerOffsServed(), 1);
}

TEST_F(DeviceManagerLife, TwoTablesAtOnceLoseAndDoubleNoDevice) {
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        std::latch start(2);
        const auto bring = [&](const std::vector<Entry>& entries) {
            start.arrive_and_wait();
            Bring(entries);
        };
        std::thread other(bring, Cards({3, 4, 5}));
        bring(Cards({1, 2, 3}));
        other.join();
        ASSERT_TRUE(Live({{"PLDM_Slot_1", "PLDM_Slot_2", "PLDM_Slot_3"},
                          {"PLDM_Slot_3", "PLDM_Slot_4", "PLDM_Slot_5"}}));
    }
}

/** With the thread that serves power offs, which only an exception ends. */
class DeviceManagerPower : public DeviceManagerLife {
protected:
    DeviceManagerPower() {
        {
            const std::scoped_lock lock(dbusReadyMutex);
            dbusReady = true;
        }
        server = std::thread([this] {
            try {
                manager.DevMgrThread();
            } catch (const EndOfThread&) {
            }
        });
        EXPECT_TRUE(Eventually([&] { return log.Count(1, "Failed to attach to MCTP\n") == 1; }));
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

    /** Has the next step of the card in slot 3 do this, and waits until it has begun. */
    void InStep(const std::function<void(const Device&)>& happens) {
        auto begun = std::make_shared<std::atomic<bool>>(false);
        OnStep([=](const NicStep& step) {
            if (step.slot == 3 && !begun->exchange(true)) {
                happens(step.device);
            }
        });
        EXPECT_TRUE(Eventually([&] { return begun->load(); }));
    }

private:
    struct EndOfThread {};
    std::thread server;
};

TEST_F(DeviceManagerPower, OffWhileATableRemovesADeviceIsServedBehindIt) {
    InStep([](const Device& device) {
        EXPECT_TRUE(Eventually([&] { return device.State() == DEVICE_STOPPED; }));
        SwitchHostOffAndOn();
    });
    Bring(Cards({1, 2}));
    EXPECT_TRUE(Live({{}}));
    EXPECT_EQ(PowerOffsServed(), 1);
    Bring(Cards({1}));
    EXPECT_TRUE(Live({{"PLDM_Slot_1"}}));
}

TEST_F(DeviceManagerPower, OffThatIsHeardLaterThanATableRemovesWhatItMakes) {
    InNextRead(SwitchHostOffAndOn);
    Bring(Cards({2, 4}));
    EXPECT_TRUE(Live({{}}));
    EXPECT_EQ(PowerOffsServed(), 1);
}

TEST_F(DeviceManagerPower, OffWhileDevicesAreRemovedIsHeardAtOnceAndATableComesBehindBoth) {
    std::atomic<bool> heardBoth{false};
    InStep([&](const Device&) {
        EXPECT_TRUE(Eventually([&] { return PowerOffsServed() == 1; }));
        SwitchHostOffAndOn();
        heardBoth = true;
        EXPECT_TRUE(Eventually([] { return useNewEndPoints.load(); })) << "the table is in a hurry";
    });
    SwitchHostOffAndOn();
    EXPECT_TRUE(Eventually([&] { return heardBoth.load(); }));
    Bring(Cards({1}));
    EXPECT_TRUE(Eventually([&] { return PowerOffsServed() == 2; }));
    EXPECT_TRUE(Live({{"PLDM_Slot_1"}}));
}

} // namespace
} // namespace vantric::test
