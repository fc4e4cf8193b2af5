/** The blocking exchange: attempts, time-outs and what ends them early. */
#include "mctp_transport/mctp_transport.hpp"

#include "common/process_flags.hpp"
#include "mctp_transport/played_link.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace vantric {
namespace {

using test::Complete;
using test::Link;

constexpr std::uint8_t eid = 9;
const std::vector<std::uint8_t> request{0x81, 0x02, 0x11, 0x05, 0x00, 0x00};
const std::vector<std::uint8_t> response{0x01, 0x02, 0x11, 0x00, 0x2A};

class MctpTransport : public testing::Test {
protected:
    void SetUp() override {
        Link() = {};
        hostPowerState = HOST_POWER_UNKNOWN;
        mctpDiscoveryRunning = false;
        useNewEndPoints = false;
        test::SetClockScale(0);
    }

    // The transport's end reaches the library too, when what a test's body gave it is gone.
    void TearDown() override { Link() = {}; }

    int Send() {
        packet.command = 0x11;
        packet.requestBytes = request;
        packet.responseBytes.assign(24, 0);
        packet.responseLength = 23;
        return transport.SendPacket(packet);
    }

    MCTPTransport transport{3, eid};
    TransportPacket packet;
};

TEST_F(MctpTransport, AnAnswerThatIsFasterThanTheWaitIsNotLost) {
    Link().onSend = [](MctpLinkRequest& record) {
        Complete(record, response);
        return 0;
    };
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(Link().sent, (std::vector<std::vector<std::uint8_t>>{request}));
    EXPECT_EQ(packet.responseLength, response.size());
    EXPECT_TRUE(std::equal(response.begin(), response.end(), packet.responseBytes.begin()));
    EXPECT_TRUE(Link().cleared.empty());
}

TEST_F(MctpTransport, AnAnswerFromAnotherThreadWakesTheSender) {
    test::SetClockScale(10);
    std::thread library;
    Link().onSend = [&](MctpLinkRequest& record) {
        library = std::thread([&record] { Complete(record, response); });
        return 0;
    };
    EXPECT_EQ(Send(), 0);
    library.join();
    EXPECT_EQ(packet.responseLength, response.size());
}

TEST_F(MctpTransport, FillsTheRecordOfTheLibrary) {
    Link().onSend = [](MctpLinkRequest& record) {
        EXPECT_EQ(record.command, 0x11U);
        EXPECT_EQ(record.eid, eid);
        EXPECT_EQ(record.messageType, 1);
        EXPECT_EQ(record.requestLength, request.size());
        EXPECT_EQ(record.responseLength, 23U);
        Complete(record, response);
        return 0;
    };
    EXPECT_EQ(Send(), 0);
}

TEST_F(MctpTransport, SendsTheSameBytesTenTimesAndClearsEachTime) {
    Link().onSend = [](MctpLinkRequest& record) {
        EXPECT_EQ(record.responseLength, 23U);
        record.responseLength = 0; // what the library does with the record in between is its own
        return 0;
    };
    EXPECT_EQ(Send(), 3);
    EXPECT_EQ(Link().sent, (std::vector<std::vector<std::uint8_t>>(10, request)));
    EXPECT_EQ(Link().cleared, std::vector<std::uint8_t>(10, eid));
}

TEST_F(MctpTransport, AnAnswerBetweenTimeOutAndClearDoesNotCountForTheNextAttempt) {
    MctpLinkRequest* pending = nullptr;
    Link().onSend = [&](MctpLinkRequest& record) {
        pending = &record;
        return 0;
    };
    Link().onClear = [&] {
        if (MctpLinkRequest* late = std::exchange(pending, nullptr)) {
            Complete(*late, response);
        }
    };
    EXPECT_EQ(Send(), 3);
    EXPECT_EQ(Link().sent.size(), 10U);
}

TEST_F(MctpTransport, IgnoresTheAnswerOfAnotherEndpoint) {
    Link().onSend = [](MctpLinkRequest& record) {
        MctpLinkRequest other = record;
        other.eid = eid + 1;
        other.completion(&other);
        return 0;
    };
    EXPECT_EQ(Send(), 3);
}

TEST_F(MctpTransport, AClaimOfMoreBytesThanTheBufferHoldsIsCut) {
    Link().onSend = [](MctpLinkRequest& record) {
        Complete(record, std::vector<std::uint8_t>(4000, 0x55));
        return 0;
    };
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(packet.responseLength, packet.responseBytes.size());
}

struct EarlyEnd {
    const char* name;
    std::function<int(MctpLinkRequest&)> onSend;
    int status;
    std::size_t attempts;
    std::size_t clears;
};

class EarlyEnds : public MctpTransport, public testing::WithParamInterface<EarlyEnd> {};

TEST_P(EarlyEnds, EndsWithStatus) {
    Link().onSend = GetParam().onSend;
    EXPECT_EQ(Send(), GetParam().status);
    EXPECT_EQ(Link().sent.size(), GetParam().attempts);
    EXPECT_EQ(Link().cleared.size(), GetParam().clears);
}

INSTANTIATE_TEST_SUITE_P(All, EarlyEnds,
                         testing::Values(EarlyEnd{"Refused", [](MctpLinkRequest&) { return 5; }, 4,
                                                  1, 0},
                                         EarlyEnd{"RefusedInDiscovery",
                                                  [](MctpLinkRequest&) {
                                                      mctpDiscoveryRunning = true;
                                                      return 5;
                                                  },
                                                  8, 1, 0},
                                         EarlyEnd{"TransportError",
                                                  [](MctpLinkRequest& record) {
                                                      Complete(record, {}, 7);
                                                      return 0;
                                                  },
                                                  4, 1, 1},
                                         EarlyEnd{"HostGoesOffInTheWait",
                                                  [](MctpLinkRequest&) {
                                                      hostPowerState = HOST_POWER_OFF;
                                                      return 0;
                                                  },
                                                  4, 1, 1},
                                         EarlyEnd{"NewTableInTheWait",
                                                  [](MctpLinkRequest&) {
                                                      useNewEndPoints = true;
                                                      return 0;
                                                  },
                                                  9, 1, 1},
                                         EarlyEnd{"NewTableInTheTenthAttempt",
                                                  [](MctpLinkRequest&) {
                                                      useNewEndPoints = Link().sent.size() == 10;
                                                      return 0;
                                                  },
                                                  9, 10, 10},
                                         EarlyEnd{"EmptyAnswer",
                                                  [](MctpLinkRequest& record) {
                                                      Complete(record, {});
                                                      return 0;
                                                  },
                                                  0, 1, 0}),
                         [](const auto& info) { return info.param.name; });

TEST_F(MctpTransport, SendsNothingWhileTheHostIsOff) {
    Link().onSend = [](MctpLinkRequest&) { return 0; };
    hostPowerState = HOST_POWER_OFF;
    EXPECT_EQ(Send(), 4);
    EXPECT_TRUE(Link().sent.empty());
}

TEST(MctpTransportLife, ClearsItsEndpointAtTheEnd) {
    Link() = {};
    { const MCTPTransport transport(3, eid); }
    EXPECT_EQ(Link().cleared, (std::vector<std::uint8_t>{eid}));
}

} // namespace
} // namespace vantric
