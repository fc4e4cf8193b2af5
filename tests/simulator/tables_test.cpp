/** The PCIe table and the notifications against a running simulator. */

#include "hubcast.h"
#include "simulator/simulator_process.hpp"
#include "slotcatalog.h"
#include "support/eventually.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <mutex>

namespace vantric::test {

namespace {

constexpr const char* scenario =
    "cards:\n"
    "  - slot: 3\n"
    "    kind: fibre-channel\n"
    "    pci: {vendor: 0x1111, device: 0x2222, subvendor: 0x3333, subdevice: 0x4444}\n"
    "    cpu-affinity: 2\n"
    "    endpoints: [{eid: 9}]\n"
    "  - {slot: 1, kind: embedded-nic, group: 2, endpoints: [{eid: 10}]}\n"
    "  - {slot: 4, kind: nic, group: 2, endpoints: [{eid: 11}]}\n"
    "  - {slot: 5, kind: nic, pcie-record: false, endpoints: [{eid: 12}]}\n";

TEST(SlotCatalog, TellsWhatStandsInEachSlot) {
    const SimulatorProcess simulator(scenario);
    std::uint32_t groups = 0;
    std::uint32_t capacity = 0;
    std::uint32_t reserved = 9;
    ASSERT_EQ(0, SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &groups, &capacity, &reserved));
    EXPECT_EQ(3U, groups);
    EXPECT_EQ(2U, capacity);
    std::array<SlotCatalogRecord, 2> records{};
    std::uint8_t count = 0;
    const auto read = [&](std::uint32_t group, std::uint32_t room) {
        records = {};
        return SlotCatalogDeviceData(SLOTCATALOG_ALL, group, &count, &capacity, records.data(),
                                     room);
    };
    ASSERT_EQ(0, read(0, 2));
    ASSERT_EQ(1, count);
    EXPECT_EQ(0x3333, +records[0].subVendorId);
    EXPECT_EQ(0x4444, +records[0].subDeviceId);
    EXPECT_EQ(2, +records[0].cpuAffinity);
    ASSERT_EQ(0, read(2, 2));
    ASSERT_EQ(2, count);
    EXPECT_EQ(SLOTCATALOG_LOCATOR_EMBEDDED, +records[0].locatorType);
    EXPECT_EQ(252, +records[0].deviceClass);
    EXPECT_EQ(4, +records[1].slotNumber);
    EXPECT_NE(0, read(3, 2));

    ASSERT_EQ(0, read(2, 1));
    EXPECT_EQ(1, count);
    EXPECT_EQ(0, +records[1].slotNumber) << "further than its buffer";
}

/** Notifications that came, with the word that came with them. */
struct Mailbox {
    std::mutex mutex;
    std::vector<std::string> names;

    bool Holds(const std::vector<std::string>& expected) {
        return Eventually([&] {
            const std::lock_guard lock(mutex);
            return names == expected;
        });
    }
};

void Deliver(void* context, const char* name, std::uintptr_t length) {
    auto& mailbox = *static_cast<Mailbox*>(context);
    const std::lock_guard lock(mailbox.mutex);
    mailbox.names.emplace_back(std::string(name) + "/" + std::to_string(length));
}

TEST(Hubcast, BringsWhatWasSubscribedToAlsoFromANewSimulator) {
    // A subscriber can't be ended: it must outlive the test.
    static Mailbox mailbox;
    SimulatorProcess simulator(scenario);
    void* context = nullptr;
    ASSERT_EQ(0, hubcast_subscriber_usrctx_init(&context, "test", Deliver, &mailbox));
    ASSERT_EQ(0, hubcast_subscribe_notification(context, "PLDMFWUpdateStop$1$FWUpdateStop$"));
    ASSERT_EQ(0, hubcast_subscribe_notification(context, "other"));
    EXPECT_EQ("a firmware update begins (0 listeners)\n", simulator.Control("fw-start").text);
    EXPECT_EQ("the firmware update ends (1 listener)\n", simulator.Control("fw-stop").text);
    const std::string stopped = "PLDMFWUpdateStop$1$FWUpdateStop$/32";
    EXPECT_TRUE(mailbox.Holds({stopped}));
    simulator.Kill();
    simulator.Start();
    EXPECT_TRUE(Eventually([&] {
        return simulator.Control("notify other").text ==
               "notification other is sent (1 listener)\n";
    }));
    EXPECT_TRUE(mailbox.Holds({stopped, "other/5"}));
    EXPECT_EQ("notification  is sent (1 listener)\n",
              simulator.Control("notify \"\" everybody").text);
    EXPECT_TRUE(mailbox.Holds({stopped, "other/5", "/0"}));
}

TEST(WithoutASimulator, EachLibraryFails) {
    unsetenv("SIMULATOR_SOCKET");
    std::uint32_t word = 0;
    std::uint8_t count = 0;
    SlotCatalogRecord record{};
    void* entries = &word;
    EXPECT_NE(0, SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &word, &word, &word));
    EXPECT_NE(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 0, &count, &word, &record, 1));
    EXPECT_EQ(0, SlotCatalogAllDevices(&entries));
    EXPECT_EQ(nullptr, entries);
    void* context = nullptr;
    EXPECT_NE(0, hubcast_subscriber_usrctx_init(&context, "test", Deliver, nullptr));
    EXPECT_NE(0, hubcast_subscribe_notification(nullptr, "name"));
}

} // namespace

} // namespace vantric::test
