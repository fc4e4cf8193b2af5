// SPDX-License-Identifier: Apache-2.0
/** The MCTP client library against a running simulator. */

#include "support/link_client.hpp"
#include "system/simulator_process.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

namespace vantric::test {

namespace {

constexpr const char* scenario = "cards:\n"
                                 "  - slot: 3\n"
                                 "    kind: nic\n"
                                 "    tid: 7\n"
                                 "    endpoints:\n"
                                 "      - {eid: 9, bdf: 0x3b01}\n"
                                 "      - {eid: 10, medium: i2c, bus-address: 0x1d, "
                                 "ldid: \" NIC.\\u0001x\", ldid-length: 600}\n";

class MctpLink : public testing::Test {
protected:
    void SetUp() override {
        heard = &events;
        simulator = std::make_unique<SimulatorProcess>(scenario);
        ASSERT_EQ(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0));
        ASSERT_TRUE(events.HasTables(1));
    }

    void TearDown() override { MctpLinkDetach(); }

    static void Control(const std::string& command) { SimulatorProcess::Control(WordsOf(command)); }

    /** Whether the function returns true, and does so, when a table's callback runs it. */
    bool HoldsInATablesCallback(const std::function<bool()>& function) {
        std::atomic<int> outcome = -1;
        {
            const std::lock_guard lock(events.mutex);
            events.duringTable = [&] { outcome = function() ? 1 : 0; };
        }
        Control("table");
        return Eventually([&] { return outcome != -1; }) && outcome == 1;
    }

    Heard events;
    std::unique_ptr<SimulatorProcess> simulator;
};

TEST_F(MctpLink, TablesComeByThemselvesAndAsTheyAreBehindTheirDiscovery) {
    for (const auto* const command :
         {"table bad-state", "table not-attached", "table bad-source", "pull 3"}) {
        Control(command);
    }
    ASSERT_TRUE(events.HasTables(5));
    EXPECT_EQ(1, events.discoveries);
    const std::size_t twoEntries = 20 + 2 * sizeof(MctpLinkEndPoint);
    const std::pair<std::size_t, const char*> expected[] = {
        {twoEntries, "01 00 00 00 01 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00"},
        {twoEntries, "01 00 00 00 01 00 00 00 00 00 00 00 01 00 00 00 02 00 00 00"},
        {twoEntries, "00 00 00 00 01 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00"},
        {twoEntries, "01 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 02 00 00 00"},
        {20, "01 00 00 00 01 00 00 00 00 00 00 00 02 00 00 00 00 00 00 00"}};
    for (std::size_t i = 0; i < events.tables.size(); ++i) {
        EXPECT_EQ(expected[i].first, events.tables[i].size());
        EXPECT_EQ(expected[i].second, HexText(std::span(events.tables[i]).first(20)));
    }
    MctpLinkEndPoint entries[2];
    std::memcpy(entries, events.tables[0].data() + 20, sizeof(entries));
    EXPECT_EQ(1, entries[0].vdm);
    EXPECT_EQ(0x3b01, entries[0].bdf);
    EXPECT_EQ(0, entries[1].vdm);
    EXPECT_EQ(0x1d, entries[1].busAddress);
    EXPECT_EQ(600, entries[1].ldidLength);
    EXPECT_EQ(std::string(" NIC.\x01x"), std::string(entries[1].ldid, 7));
}

TEST_F(MctpLink, ARequestIsAnsweredOrRefused) {
    EXPECT_EQ("01 00 02 00 07", Exchange(9, "81 00 02").Answer());
    EXPECT_EQ("01 00 04 00 35", Exchange(9, "81 00 04", 5).Answer()) << "cut to its buffer";
    EXPECT_EQ("refused", Exchange(200, "81 00 02").Answer());
    Exchange vendorMessage(10, "81 00 02");
    vendorMessage.record.messageType = 0x7E;
    EXPECT_EQ("refused", vendorMessage.Answer());
    EXPECT_NE(0, MctpLinkSendRequest(nullptr, 0));

    Control("error-type 9 4");
    EXPECT_TRUE(Exchange(9, "81 00 02").Answer().starts_with("error 4: "));
    Control("refuse 9");
    EXPECT_EQ("refused", Exchange(9, "81 00 02").Answer());
    Control("move 10 19 quietly");
    EXPECT_EQ("refused", Exchange(10, "81 00 02").Answer());
    EXPECT_EQ("01 00 02 00 07", Exchange(19, "81 00 02").Answer());
}

TEST_F(MctpLink, AClearedRequestIsNotTouchedAndNotCompleted) {
    Control("slow 9 300");
    Control("slow 10 100");
    auto cleared = std::make_unique<Exchange>(9, "81 00 02");
    Exchange other(10, "81 00 02");
    ASSERT_TRUE(cleared->Send());
    ASSERT_TRUE(other.Send());
    MctpLinkClearRequest(9, 0);
    cleared.reset(); // a late touch would be a use after free
    EXPECT_EQ("02 00 02 00 07", Exchange(9, "82 00 02").Answer());
    EXPECT_TRUE(other.Completes());
}

TEST_F(MctpLink, ClearWaitsForACompletionThatRuns) {
    Exchange exchange(9, "81 00 02");
    std::promise<void> leave;
    std::atomic<bool> left = false;
    exchange.onCompletion = [&] {
        exchange.completed = true;
        leave.get_future().wait();
        left = true;
    };
    ASSERT_TRUE(exchange.Send());
    ASSERT_TRUE(exchange.Completes());
    std::thread clearing([&] {
        MctpLinkClearRequest(9, 0);
        EXPECT_TRUE(left);
    });
    leave.set_value();
    clearing.join();
}

TEST_F(MctpLink, ACompletionMayClearAndSendAgain) {
    Exchange exchange(9, "81 00 02");
    Exchange following(9, "82 00 02");
    exchange.onCompletion = [&] {
        MctpLinkClearRequest(9, 0);
        EXPECT_TRUE(following.Send());
    };
    ASSERT_TRUE(exchange.Send());
    EXPECT_TRUE(following.Completes());
}

TEST_F(MctpLink, ATablesCallbackMayAskAndDetach) {
    EXPECT_TRUE(HoldsInATablesCallback(
        [] { return Exchange(9, "81 00 02").Answer() == "01 00 02 00 07"; }));
    EXPECT_TRUE(HoldsInATablesCallback([] { return MctpLinkDetach() == 0; }));
}

TEST_F(MctpLink, WithoutItsSimulatorItFailsAndComesBackWithIt) {
    Control("silence 9");
    Exchange pending(9, "81 00 02");
    ASSERT_TRUE(pending.Send());
    simulator->Kill();
    EXPECT_EQ("refused", Exchange(9, "81 00 02").Answer());
    simulator->Start(scenario);
    ASSERT_TRUE(events.HasTables(2));
    EXPECT_EQ("02 00 02 00 07", Exchange(9, "82 00 02").Answer());
    EXPECT_FALSE(pending.completed);
    MctpLinkClearRequest(9, 0);
}

TEST_F(MctpLink, NothingIsCalledAfterADetachment) {
    Control("slow 9 100");
    Exchange exchange(9, "81 00 02");
    ASSERT_TRUE(exchange.Send());
    EXPECT_EQ(0, MctpLinkDetach());
    Control("table");
    EXPECT_EQ(1U, events.tables.size());
    EXPECT_EQ("refused", Exchange(10, "81 00 02").Answer());
    EXPECT_NE(0, MctpLinkAttach(4, 0xFFFFFFFF, OnCallback, 0));
    EXPECT_NE(0, MctpLinkAttach(3, 0xFFFFFFFF, nullptr, 0));
    EXPECT_EQ(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0));
    EXPECT_TRUE(events.HasTables(2));
    EXPECT_NE(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0)) << "one at a time";
}

TEST_F(MctpLink, ThreadsMaySendAndClear) {
    std::thread other([] { SendAndClear(9, 300); });
    SendAndClear(10, 300);
    other.join();
}

TEST(MctpLinkAlone, FailsWithoutASimulator) {
    unsetenv("SIMULATOR_SOCKET");
    EXPECT_NE(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0));
    setenv("SIMULATOR_SOCKET", "/nowhere/socket", 1);
    EXPECT_NE(0, MctpLinkAttach(3, 0xFFFFFFFF, OnCallback, 0));
    EXPECT_FALSE(Exchange(9, "81 00 02").Send());
    EXPECT_EQ(0, MctpLinkClearRequest(9, 0));
    EXPECT_EQ(0, MctpLinkDetach());
}

} // namespace

} // namespace vantric::test
