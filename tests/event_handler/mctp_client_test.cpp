/** What becomes of the records that the MCTP client library hands over. */
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

/// What a played library was given.
MctpLinkCallback attachedCallback = nullptr;
int attachResult = 0;
int detachCount = 0;
HubcastCallback hubcastCallback = nullptr;
std::vector<std::string> subscriptions;
int subscriberResult = 0;

} // namespace

int MctpLinkAttach(std::uint32_t linkType, std::uint32_t filter, MctpLinkCallback callback,
                   std::uint32_t flags) {
    EXPECT_EQ(linkType, 3U);
    EXPECT_EQ(filter, 0xFFFFFFFFU);
    EXPECT_EQ(flags, 0U);
    attachedCallback = callback;
    return attachResult;
}

int MctpLinkDetach() {
    ++detachCount;
    return 0;
}

int hubcast_subscriber_usrctx_init(void** context, const char* subscriber, HubcastCallback callback,
                                   void* user) {
    EXPECT_STREQ(subscriber, "vantric");
    EXPECT_EQ(user, nullptr);
    *context = &subscriptions;
    hubcastCallback = callback;
    return subscriberResult;
}

int hubcast_subscribe_notification(void* context, const char* name) {
    static_cast<std::vector<std::string>*>(context)->emplace_back(name);
    return 0;
}

namespace vantric {
namespace {

/** Remembers the events that it was told. */
class Listener : public EventHandler {
public:
    void Update(EventKind kind, const std::any& payload) override {
        kinds.push_back(kind);
        if (const auto* const* table = std::any_cast<const MctpLinkEndPointResp*>(&payload)) {
            entryCounts.push_back((*table)->entryCount);
        }
    }
    std::vector<EventKind> kinds;
    std::vector<std::uint32_t> entryCounts;
};

Listener& TheListener() {
    static Listener listener;
    [[maybe_unused]] static const bool registered = [] {
        RegisterObserver(nullptr);
        RegisterObserver(&listener);
        return true;
    }();
    return listener;
}

struct TableHead {
    std::uint32_t attached = 1;
    std::uint32_t source = 1;
    std::uint32_t acceptable = 0;
    std::uint32_t discoveryState = 2;
    std::uint32_t entryCount = 3;
};

/** Hands a table over as the library does: in a block of malloc, which the callback frees. */
void Deliver(const TableHead& head) {
    auto* info = static_cast<MctpLinkCallbackInfo*>(std::calloc(1, sizeof(MctpLinkCallbackInfo)));
    info->callbackType = MCTPLINK_TABLE_DELIVERED;
    info->tableAttached = head.attached;
    info->table = {head.source, head.acceptable, head.discoveryState, head.entryCount};
    MctpClientCallBack(info);
}

void StartDiscovery() {
    MctpLinkCallbackInfo info{};
    info.callbackType = MCTPLINK_DISCOVERY_STARTED;
    MctpClientCallBack(&info);
}

class MctpClientCallback : public testing::Test {
protected:
    void SetUp() override {
        mctpDiscoveryState = MCTP_NO_TABLE_YET;
        mctpDiscoveryRunning = false;
        TheListener().kinds.clear();
        TheListener().entryCounts.clear();
    }
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
        {"other source", {.source = 5}, false, {"Invalid discovery state 2\n"}},
        {"discovery not complete", {.discoveryState = 1}, false, {"Invalid discovery state 1\n"}},
        {"not attached", {.attached = 0}, false},
        {"empty", {.entryCount = 0}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        SetUp();
        const CapturedLog log;
        Deliver(row.head);
        EXPECT_EQ(log.Messages(4), row.log);
        EXPECT_EQ(log.Lines().size(), row.log.size());
        const std::size_t told = row.accepted ? 1 : 0;
        EXPECT_EQ(TheListener().kinds, std::vector(told, END_POINT_TABLE_UPDATED));
        EXPECT_EQ(TheListener().entryCounts, std::vector(told, row.head.entryCount));
        EXPECT_EQ(mctpDiscoveryState, row.accepted ? MCTP_TABLE_DELIVERED : MCTP_NO_TABLE_YET);
    }
}

TEST_F(MctpClientCallback, ADiscoveryCountsOnlyAfterTheFirstTable) {
    StartDiscovery();
    EXPECT_FALSE(mctpDiscoveryRunning);
    Deliver({});
    StartDiscovery();
    StartDiscovery();
    EXPECT_TRUE(mctpDiscoveryRunning);
    Deliver({.discoveryState = 1});
    EXPECT_TRUE(mctpDiscoveryRunning) << "a bad table doesn't end a discovery";
    Deliver({});
    EXPECT_FALSE(mctpDiscoveryRunning);
}

TEST_F(MctpClientCallback, IgnoresNothingAndOtherTypes) {
    const CapturedLog log;
    MctpClientCallBack(nullptr);
    MctpLinkCallbackInfo info{};
    info.callbackType = 9;
    MctpClientCallBack(&info);
    EXPECT_EQ(log.Messages(2), std::vector<std::string>{"Invalid callbackInfo\n"});
    EXPECT_TRUE(TheListener().kinds.empty());
}

TEST(MctpClientLife, IsAttachedWhileItLives) {
    for (const int result : {0, 1}) {
        attachResult = result;
        const int before = detachCount;
        const CapturedLog log;
        { const MctpClient client; }
        EXPECT_EQ(attachedCallback, &MctpClientCallBack);
        EXPECT_EQ(detachCount, before + 1);
        EXPECT_EQ(log.Count(1, "Failed to attach to MCTP\n"), result);
    }
}

TEST(Notifications, OnlyTheTwoOfAFirmwareUpdateBecomeEvents) {
    SubscribeToEvents();
    EXPECT_EQ(subscriptions, (std::vector<std::string>{"PLDMFWUpdateStart$1$FWUpdateStart$",
                                                       "PLDMFWUpdateStop$1$FWUpdateStop$"}));
    TheListener().kinds.clear();
    hubcastCallback(nullptr, "PLDMFWUpdateStop$1$FWUpdateStop$", 32);
    hubcastCallback(nullptr, "PLDMFWUpdateStart$1$FWUpdateStart$", 34);
    hubcastCallback(nullptr, "PLDMFWUpdateStart$1$FWUpdateStart$", 0);
    hubcastCallback(nullptr, "FanSpeed$1$Changed$", 18);
    hubcastCallback(nullptr, nullptr, 4);
    EXPECT_EQ(TheListener().kinds, (std::vector<EventKind>{FW_UPDATE_END, FW_UPDATE_START}));
}

TEST(Notifications, ASubscriberThatFailsSubscribesToNothing) {
    subscriptions.clear();
    subscriberResult = 1;
    SubscribeToEvents();
    subscriberResult = 0;
    EXPECT_TRUE(subscriptions.empty());
}

} // namespace
} // namespace vantric
