/** Who gets a device next. */
#include "device/device.hpp"

#include "support/eventually.hpp"
#include "support/publisher_recorder.hpp"
#include "support/test_clock.hpp"
#include "support/threads.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include <unistd.h>

namespace vantric::test {
namespace {

constexpr std::uint16_t rounds = 20;

DeviceDetails Details() {
    DeviceDetails details;
    details.slotNumber = 3;
    details.ldid = "NIC.Slot.3";
    details.i2cEIDs = {{.busAddress = 1, .bdf = 0, .eid = 1, .instance = 0}};
    return details;
}

/** Begins its next cycle at once, as after a tolerated failure. In each cycle a table comes, which
 *  has to wait until the cycle lets go of the device. */
class ImpatientDevice : public Device {
public:
    ImpatientDevice() : Device(Details(), "/base/", RecordingDoors()) {}
    ~ImpatientDevice() override {
        if (table.joinable()) {
            table.join();
        }
    }

    std::atomic<std::uint16_t> tables{0};
    std::atomic<int> overtaken{0}; ///< tables that the next cycle came before

protected:
    void InventoryTheDevice() override { state = DEVICE_MONITORING; }

    VantricStatus MonitorTheDevice() override {
        const auto lock = endpoints.BeginWork();
        if (tables > 0 && endpoints.ControllerEIDMap().begin()->second != LatestEid()) {
            ++overtaken;
        } else if (tables < rounds) {
            BringTable();
        }
        return STATUS_SUCCESS;
    }

private:
    std::uint16_t LatestEid() const { return static_cast<std::uint16_t>(100 + tables); }

    void BringTable() {
        if (table.joinable()) {
            table.join();
        }
        ++tables;
        std::atomic<pid_t> thread{0};
        table = std::thread([this, &thread, eid = LatestEid()] {
            thread = gettid();
            UpdateEIDTables({{.busAddress = 1, .bdf = 0, .eid = eid, .instance = 0}}, {});
        });
        EXPECT_TRUE(Eventually([&] { return thread != 0 && Sleeps(thread); }));
    }

    std::thread table;
};

TEST(DeviceTurn, ATableThatWaitsComesBeforeTheNextCycle) {
    SetClockScale(0);
    ImpatientDevice device;
    device.Initialize();
    EXPECT_TRUE(Eventually([&] { return device.tables == rounds; }));
    device.Stop();
    EXPECT_EQ(device.overtaken, 0);
    TakePosted();
    TakePauses();
}

} // namespace
} // namespace vantric::test
