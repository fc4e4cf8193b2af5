// SPDX-License-Identifier: Apache-2.0
/** The bytes of a card on a serial line: frames, packets, and what a bus owner asks. */
#include "serial/framing.hpp"
#include "serial/mctp_control.hpp"
#include "serial/packets.hpp"

#include "pldm_cmds/bytes.hpp"

#include <gtest/gtest.h>

namespace simulator {

namespace {

using Texts = std::vector<std::string>;

Bytes Hex(std::string_view text) {
    return ::Bytes::FromHex(text);
}

/** The packets that the bytes of a line hold. */
Texts Received(std::string_view line) {
    SerialDeframer deframer;
    Texts packets;
    for (const auto byte : Hex(line)) {
        if (const auto packet = deframer.Feed(byte)) {
            packets.push_back(HexText(*packet));
        }
    }
    return packets;
}

TEST(SerialFraming, EscapesThePacketOnly) {
    EXPECT_EQ("7e 01 08 01 09 08 c8 01 80 02 51 5f 08 7e",
              HexText(EncodeSerial(Hex("01 09 08 c8 01 80 02 51"))));
    EXPECT_EQ("7e 01 02 7d 5e 7d 5d 68 94 7e", HexText(EncodeSerial(Hex("7e 7d"))));
}

TEST(SerialFraming, TakesWholeFramesAndNothingElse) {
    const std::string good = "7e 01 02 7d 5e 7d 5d 68 94 7e";
    const Texts packet{"7e 7d"};
    const std::pair<std::string, Texts> rows[] = {
        {good, packet},
        {good + " " + good, {"7e 7d", "7e 7d"}},
        {"55 55 7e 7e " + good, packet},
        {"7e 01 02 7d 5e 7d 5d 68 95 7e", {}},             // check sum
        {"7e 02 02 7d 5e 7d 5d 68 94 7e", {}},             // revision
        {"7e 01 02 7d 5e 7e " + good, packet},             // ends within the packet
        {"7e 01 02 7d 5e 7d 5d 68 94 00 7e", {}},          // longer than it says
        {"7e 01 ff 55 55 7e 7e 01 7e 7e " + good, packet}, // flood
    };
    for (const auto& [line, packets] : rows) {
        EXPECT_EQ(packets, Received(line)) << line;
    }
}

TEST(Packets, CarryAMessageThereAndBack) {
    for (const std::size_t size : {1U, 64U, 65U, 300U}) {
        MctpMessage message{.destination = 9, .source = 8, .tag = 5, .tagOwner = true, .body = {}};
        for (std::size_t i = 0; i < size; ++i) {
            message.body.push_back(static_cast<std::uint8_t>(i));
        }
        const auto packets = ToPackets(message);
        EXPECT_EQ((size + 63) / 64, packets.size());
        Reassembly reassembly;
        std::optional<MctpMessage> whole;
        for (const auto& packet : packets) {
            EXPECT_FALSE(whole);
            whole = reassembly.Feed(packet);
        }
        ASSERT_TRUE(whole) << size;
        EXPECT_EQ(message.body, whole->body);
        EXPECT_EQ(0x985, whole->destination << 8 | whole->source << 4 | whole->tag);
        EXPECT_TRUE(whole->tagOwner);
    }
}

TEST(Packets, OutOfOrderCostTheirMessageOnly) {
    const std::pair<std::vector<const char*>, const char*> rows[] = {
        {{"01 09 08 88 aa", "01 09 08 18 bb", "01 09 08 68 cc"}, "aa bb cc"},
        {{"01 09 08 88 aa", "01 09 08 28 bb", "01 09 08 58 cc"}, ""},         // sequence
        {{"01 09 08 88 aa", "01 09 08 c9 dd", "01 09 08 58 bb"}, "dd aa bb"}, // another tag between
        {{"01 09 08 88 aa", "01 09 08 88 bb", "01 09 08 58 cc"}, "bb cc"},    // begins anew
        {{"01 09 08 58 aa"}, ""},                                             // no beginning
        {{"02 09 08 c8 aa", "01 09 08 c8", "01 09"}, ""},                     // no packets
    };
    for (const auto& [packets, bodies] : rows) {
        Reassembly reassembly;
        ::Bytes received;
        for (const auto* packet : packets) {
            if (const auto message = reassembly.Feed(Hex(packet))) {
                received.insert(received.end(), message->body.begin(), message->body.end());
            }
        }
        EXPECT_EQ(bodies, HexText(received)) << packets.front();
    }
}

TEST(MctpControl, AnswersWhatABusOwnerAsks) {
    const std::pair<const char*, const char*> rows[] = {
        {"80 04 ff", "00 04 00 01 f1 f3 f1 00"},
        {"81 04 01", "01 04 00 01 f1 f0 f0 00"},
        {"82 04 05", "02 04 80"},
        {"83 01 00 0d", "03 01 00 00 0d 00"},
        {"84 02", "04 02 00 0d 00 00"},
        {"85 05", "05 05 00 01 01"},
        {"86 01 00 07", "06 01 02"},
        {"87 01 00", "07 01 03"},
        {"88 09", "08 09 05"},
        {"09 02", ""},
        {"8a 03", "0a 03 00 07 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"}};
    ControlledEndpoint endpoint{.eid = 0, .uuid = {7}};
    for (const auto& [request, response] : rows) {
        EXPECT_EQ(response, HexText(AnswerControl(Hex(request), endpoint).value_or(Bytes{})))
            << request;
    }
    EXPECT_EQ(13, endpoint.eid);
}

} // namespace

} // namespace simulator
