// SPDX-License-Identifier: Apache-2.0
/** The blocking exchange: attempts, time-outs and what ends them early. */
#include "mctp_transport/mctp_transport.hpp"

#include "common/log.hpp"
#include "common/process_flags.hpp"
#include "mctp_transport/played_link.hpp"
#include "support/captured_log.hpp"
#include "support/test_clock.hpp"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace vantric {
namespace {

using test::Complete;
using test::Link;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t eid = 9;
const Bytes request{0x81, 0x02, 0x11, 0x05, 0x00, 0x00};
const Bytes response{1, 2, 0x11, 0, 0x2A, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 0xF0};

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
    void TearDown() override { SetUp(); }

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
    const CapturedLog log;
    Link().onSend = [](MctpLinkRequest& record) {
        EXPECT_EQ(record.command, 0x11U);
        EXPECT_EQ(record.eid, eid);
        EXPECT_EQ(record.messageType, 1);
        EXPECT_EQ(record.responseLength, 23U);
        Complete(record, response);
        return 0;
    };
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(Link().sent, std::vector<Bytes>(1, request));
    EXPECT_EQ(packet.responseLength, response.size());
    EXPECT_TRUE(std::equal(response.begin(), response.end(), packet.responseBytes.begin()));
    EXPECT_TRUE(Link().cleared.empty());
    EXPECT_EQ(log.Messages(LOG_LEVEL_TRACE),
              (std::vector<std::string>{
                  "CMD[3][11][06/06]: 81 02 11 05 00 00 \n",
                  "MCTP:RSP:EPID[9]:RSPS[0]:RSPF[0]:RSPEType[0]\n",
                  "RSP[3][11][16/17]: 01 02 11 00 2A 05 06 07 08 09 0A 0B 0C 0D 0E 0F \n",
                  "RSP[3][11][17/17]: F0 \n",
              }));
}

TEST_F(MctpTransport, AnAnswerFromAnotherThreadWakesTheSender) {
    test::SetClockScale(10);
    std::thread other;
    Link().onSend = [&](MctpLinkRequest& record) {
        other = std::thread([&record] { Complete(record, response); });
        return 0;
    };
    EXPECT_EQ(Send(), 0);
    other.join();
    EXPECT_EQ(packet.responseLength, response.size());
}

TEST_F(MctpTransport, SendsTheSameBytesTenTimesAndClearsEachTime) {
    Link().onSend = [](MctpLinkRequest& record) {
        EXPECT_EQ(record.responseLength, 23U);
        record.responseLength = 0; // what the library does with the record in between is its own
        return 0;
    };
    EXPECT_EQ(Send(), 3);
    EXPECT_EQ(Link().sent, std::vector<Bytes>(10, request));
    EXPECT_EQ(Link().cleared, Bytes(10, eid));
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

TEST_F(MctpTransport, EndsWithAStatusForWhatHappens) {
    const struct {
        const char* what;
        std::function<void(MctpLinkRequest&)> happens;
        int result; ///< of the library's call
        int status;
        std::size_t attempts;
        std::size_t clears;
    } rows[] = {
        {"refused", [](auto&) {}, 5, 4, 1, 0},
        {"refused in a discovery", [](auto&) { mctpDiscoveryRunning = true; }, 5, 8, 1, 0},
        {"an error", [](auto& record) { Complete(record, {}, 7); }, 0, 4, 1, 1},
        {"the host goes off", [](auto&) { hostPowerState = HOST_POWER_OFF; }, 0, 4, 1, 1},
        {"a new table", [](auto&) { useNewEndPoints = true; }, 0, 9, 1, 1},
        {"one in the tenth attempt", [](auto&) { useNewEndPoints = Link().sent.size() == 10; }, 0,
         9, 10, 10},
        {"an empty answer", [](auto& record) { Complete(record, {}); }, 0, 0, 1, 0},
        {"more than there is room for", [](auto& record) { Complete(record, Bytes(4000)); }, 0, 0,
         1, 0},
        {"the answer of another endpoint",
         [](auto& record) {
             MctpLinkRequest other = record;
             other.eid = eid + 1;
             other.completion(&other);
         },
         0, 3, 10, 10},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        SetUp();
        Link().onSend = [&row](MctpLinkRequest& record) {
            row.happens(record);
            return row.result;
        };
        EXPECT_EQ(Send(), row.status);
        EXPECT_EQ(Link().sent.size(), row.attempts);
        EXPECT_EQ(Link().cleared.size(), row.clears);
        EXPECT_LE(packet.responseLength, packet.responseBytes.size());
    }
    hostPowerState = HOST_POWER_OFF;
    Link().sent.clear();
    EXPECT_EQ(Send(), 4);
    EXPECT_TRUE(Link().sent.empty()) << "sent while the host is off";
}

TEST(MctpTransportLife, ClearsItsEndpointAtTheEnd) {
    Link() = {};
    { const MCTPTransport transport(3, eid); }
    EXPECT_EQ(Link().cleared, Bytes{eid});
}

} // namespace
} // namespace vantric
