/** The PCIe table and the notifications against a running bench. */

#include "bench/bench_process.hpp"
#include "bench/bytes.hpp"
#include "hubcast.h"
#include "slotcatalog.h"

#include <gtest/gtest.h>

#include <array>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

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
    "  - {slot: 5, kind: nic, pcie-record: false, endpoints: [{eid: 12}]}\n"
    "accelerator-table:\n"
    "  - \"01\"\n"
    "  - {pci: {vendor: 0x1002, device: 0x75a0, subvendor: 1, subdevice: 2}, sensors: [30, 405]}\n";

TEST(SlotCatalog, TellsWhatStandsInEachSlot) {
    const test::BenchProcess bench(scenario);
    std::uint32_t groups = 0;
    std::uint32_t capacity = 0;
    std::uint32_t reserved = 9;
    ASSERT_EQ(0, SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &groups, &capacity, &reserved));
    EXPECT_EQ(3U, groups);
    EXPECT_EQ(2U, capacity);
    std::array<SlotCatalogRecord, 2> records{};
    std::uint8_t count = 0;
    ASSERT_EQ(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 0, &count, &capacity, records.data(), 2));
    ASSERT_EQ(1, count);
    const auto& card = records[0];
    EXPECT_EQ(0x1111, +card.vendorId);
    EXPECT_EQ(0x2222, +card.deviceId);
    EXPECT_EQ(0x3333, +card.subVendorId);
    EXPECT_EQ(0x4444, +card.subDeviceId);
    EXPECT_EQ(SLOTCATALOG_LOCATOR_SLOT, +card.locatorType);
    EXPECT_EQ(3, +card.slotNumber);
    EXPECT_EQ(10, +card.deviceClass);
    EXPECT_EQ(2, +card.cpuAffinity);
    ASSERT_EQ(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 2, &count, &capacity, records.data(), 2));
    ASSERT_EQ(2, count);
    EXPECT_EQ(2U, capacity);
    EXPECT_EQ(SLOTCATALOG_LOCATOR_EMBEDDED, +records[0].locatorType);
    EXPECT_EQ(252, +records[0].deviceClass);
    EXPECT_EQ(4, +records[1].slotNumber);
    EXPECT_NE(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 3, &count, &capacity, records.data(), 2));

    records = {};
    ASSERT_EQ(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 2, &count, &capacity, records.data(), 1));
    EXPECT_EQ(1, count);
    EXPECT_EQ(0, +records[1].slotNumber) << "further than its buffer";
}

TEST(SlotCatalog, TellsTheAccelerators) {
    const test::BenchProcess bench(scenario);
    void* entries = nullptr;
    ASSERT_EQ(2, SlotCatalogAllDevices(&entries));
    const std::span bytes(static_cast<const std::uint8_t*>(entries), 2 * 232);
    EXPECT_EQ("01 00 00", test::Text(bytes.first(3)));
    const auto described = bytes.subspan(232);
    EXPECT_EQ("16 00 00 00 00", test::Text(described.first(5)));
    EXPECT_EQ("02 10 a0 75 01 00 02 00 00", test::Text(described.subspan(60, 9)));
    EXPECT_EQ("1e 00 95 01 00 00 00 00 00", test::Text(described.subspan(114, 9)));
    std::free(entries);
}

TEST(SlotCatalog, FailsWithoutABench) {
    unsetenv("BENCH_SOCKET");
    std::uint32_t word = 0;
    std::uint8_t count = 0;
    SlotCatalogRecord record{};
    void* entries = &word;
    EXPECT_NE(0, SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &word, &word, &word));
    EXPECT_NE(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 0, &count, &word, &record, 1));
    EXPECT_EQ(0, SlotCatalogAllDevices(&entries));
    EXPECT_EQ(nullptr, entries);
}

/** Notifications that came, with the word that came with them. */
struct Mailbox {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> names;

    /** What has come once it is this much, or after a long wait. */
    std::vector<std::string> WaitFor(std::size_t count) {
        std::unique_lock lock(mutex);
        changed.wait_for(lock, std::chrono::seconds(30), [&] { return names.size() >= count; });
        return names;
    }
};

void Deliver(void* context, const char* name, std::uintptr_t length) {
    auto& mailbox = *static_cast<Mailbox*>(context);
    const std::lock_guard lock(mailbox.mutex);
    mailbox.names.emplace_back(std::string(name) + "/" + std::to_string(length));
    mailbox.changed.notify_all();
}

TEST(Hubcast, BringsWhatWasSubscribedToAlsoFromANewBench) {
    // A subscriber can't be ended: it must outlive the test.
    static Mailbox mailbox;
    test::BenchProcess bench(scenario);
    void* context = nullptr;
    ASSERT_EQ(0, hubcast_subscriber_usrctx_init(&context, "test", Deliver, &mailbox));
    ASSERT_EQ(0, hubcast_subscribe_notification(context, "PLDMFWUpdateStop$1$FWUpdateStop$"));
    ASSERT_EQ(0, hubcast_subscribe_notification(context, "other"));
    EXPECT_EQ("a firmware update begins (0 listeners)\n", bench.Control({"fw-start"}).output);
    EXPECT_EQ("the firmware update ends (1 listener)\n", bench.Control({"fw-stop"}).output);
    const std::string stopped = "PLDMFWUpdateStop$1$FWUpdateStop$/32";
    EXPECT_EQ(std::vector<std::string>{stopped}, mailbox.WaitFor(1));
    bench.Kill();
    bench.Start();
    while (bench.Control({"notify", "other"}).output !=
           "notification other is sent (1 listener)\n") {
        std::this_thread::yield();
    }
    EXPECT_EQ((std::vector<std::string>{stopped, "other/5"}), mailbox.WaitFor(2));
    EXPECT_EQ("notification  is sent (1 listener)\n",
              bench.Control({"notify", "", "everybody"}).output);
    EXPECT_EQ("/0", mailbox.WaitFor(3).back());
}

TEST(Hubcast, FailsWithoutABench) {
    unsetenv("BENCH_SOCKET");
    void* context = nullptr;
    EXPECT_NE(0, hubcast_subscriber_usrctx_init(&context, "test", Deliver, nullptr));
    EXPECT_NE(0, hubcast_subscribe_notification(nullptr, "name"));
}

} // namespace
