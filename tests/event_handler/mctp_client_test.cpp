// SPDX-License-Identifier: Apache-2.0
/** What becomes of what the MCTP client library and the notification library hand over. */
#include "event_handler/mctp_client.hpp"

#include "common/process_flags.hpp"
#include "event_handler/event_handler.hpp"
#include "support/captured_log.hpp"

#include <hubcast.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

// What the played libraries were given, and what they return.
MctpLinkCallback attachedCallback = nullptr;
HubcastCallback hubcastCallback = nullptr;
std::vector<std::string> subscriptions;
int result = 0;

} // namespace

int MctpLinkAttach(std::uint32_t linkType, std::uint32_t filter, MctpLinkCallback callback,
                   std::uint32_t flags) {
    EXPECT_TRUE(linkType == 3 && filter == 0xFFFFFFFF && flags == 0);
    attachedCallback = callback;
    return result;
}

int MctpLinkDetach() {
    attachedCallback = nullptr;
    return 0;
}

int hubcast_subscriber_usrctx_init(void** context, const char* subscriber, HubcastCallback callback,
                                   void* user) {
    EXPECT_STREQ(subscriber, "vantric");
    EXPECT_EQ(user, nullptr);
    *context = &subscriptions;
    hubcastCallback = callback;
    return result;
}

int hubcast_subscribe_notification(void* context, const char* name) {
    static_cast<std::vector<std::string>*>(context)->emplace_back(name);
    return 0;
}

namespace vantric {
namespace {

/** The events since the last look: kinds, and after a table's the number of its entries. */
class Listener : public EventHandler {
public:
    void Update(EventKind kind, const std::any& payload) override {
        events.push_back(kind);
        if (const auto* const* table = std::any_cast<const MctpLinkEndPointResp*>(&payload)) {
            events.push_back((*table)->entryCount);
        }
    }

    std::vector<std::uint32_t> events;
};

std::vector<std::uint32_t> TakeEvents() {
    static Listener listener;
    [[maybe_unused]] static const bool registered = (RegisterObserver(listener), true);
    return std::exchange(listener.events, {});
}

struct TableHead {
    std::uint32_t attached = 1;
    std::uint32_t source = 1;
    std::uint32_t acceptable = 0;
    std::uint32_t discoveryState = 2;
    std::uint32_t entryCount = 3;
};

class MctpClientCallback : public testing::Test {
protected:
    MctpClientCallback() {
        mctpDiscoveryState = MCTP_NO_TABLE_YET;
        TakeEvents();
    }

    /** Hands a table over as the library does: in a block of malloc, which the callback frees. */
    static void Deliver(const TableHead& head) {
        auto* info =
            static_cast<MctpLinkCallbackInfo*>(std::calloc(1, sizeof(MctpLinkCallbackInfo)));
        info->callbackType = MCTPLINK_TABLE_DELIVERED;
        info->tableAttached = head.attached;
        info->table = {head.source, head.acceptable, head.discoveryState, head.entryCount};
        attachedCallback(info);
    }

    static void Call(std::uint32_t type) {
        MctpLinkCallbackInfo info{};
        info.callbackType = type;
        attachedCallback(&info);
    }

    const MctpClient client;
    CapturedLog log;
};

TEST_F(MctpClientCallback, HandsOnlyGoodTablesOverDuringTheCall) {
    const struct {
        const char* name;
        TableHead head;
        bool accepted;
        std::vector<std::string> log = {};
    } rows[] = {
        {"good", {}, true},
        {"other source but acceptable", {.source = 5, .acceptable = 1}, true},
        {"other source", {.source = 5}, false, {"4 Invalid discovery state 2\n"}},
        {"discovery not complete", {.discoveryState = 1}, false, {"4 Invalid discovery state 1\n"}},
        {"not attached", {.attached = 0}, false},
        {"empty", {.entryCount = 0}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        mctpDiscoveryState = MCTP_NO_TABLE_YET;
        Deliver(row.head);
        std::vector<std::string> told;
        for (const auto& line : log.Take()) {
            told.push_back(std::to_string(line.level) + ' ' + line.message);
        }
        EXPECT_EQ(told, row.log);
        EXPECT_EQ(TakeEvents(), row.accepted
                                    ? (std::vector<std::uint32_t>{END_POINT_TABLE_UPDATED, 3})
                                    : std::vector<std::uint32_t>{});
        EXPECT_EQ(mctpDiscoveryState, row.accepted ? MCTP_TABLE_DELIVERED : MCTP_NO_TABLE_YET);
    }
}

TEST_F(MctpClientCallback, ADiscoveryCountsOnlyAfterTheFirstTable) {
    Call(MCTPLINK_DISCOVERY_STARTED);
    EXPECT_FALSE(mctpDiscoveryRunning);
    Deliver({});
    Call(MCTPLINK_DISCOVERY_STARTED);
    Call(MCTPLINK_DISCOVERY_STARTED);
    EXPECT_TRUE(mctpDiscoveryRunning);
    Deliver({.discoveryState = 1});
    EXPECT_TRUE(mctpDiscoveryRunning) << "a bad table doesn't end a discovery";
    Deliver({});
    EXPECT_FALSE(mctpDiscoveryRunning);
}

TEST_F(MctpClientCallback, IgnoresNothingAndOtherTypes) {
    attachedCallback(nullptr);
    Call(9);
    EXPECT_EQ(log.Messages(2), std::vector<std::string>{"Invalid callbackInfo\n"});
    EXPECT_TRUE(TakeEvents().empty());
}

TEST(Notifications, OnlyTheTwoOfAFirmwareUpdateBecomeEvents) {
    result = 1;
    SubscribeToEvents();
    EXPECT_TRUE(subscriptions.empty());
    result = 0;
    SubscribeToEvents();
    EXPECT_EQ(subscriptions, (std::vector<std::string>{"PLDMFWUpdateStart$1$FWUpdateStart$",
                                                       "PLDMFWUpdateStop$1$FWUpdateStop$"}));
    TakeEvents();
    hubcastCallback(nullptr, "PLDMFWUpdateStop$1$FWUpdateStop$", 32);
    hubcastCallback(nullptr, "PLDMFWUpdateStart$1$FWUpdateStart$", 34);
    hubcastCallback(nullptr, "PLDMFWUpdateStart$1$FWUpdateStart$", 0);
    hubcastCallback(nullptr, "FanSpeed$1$Changed$", 18);
    hubcastCallback(nullptr, nullptr, 4);
    EXPECT_EQ(TakeEvents(), (std::vector<std::uint32_t>{FW_UPDATE_END, FW_UPDATE_START}));
}

} // namespace
} // namespace vantric
