/** What a described terminus answers, byte for byte. The expected bytes were written down by hand
 *  from the tables of DSP0240, DSP0248, DSP0257 and DSP0267. */

#include "pldm/terminus.hpp"
#include "pldm_cmds/bytes.hpp"
#include "scenario/scenario.hpp"
#include "support/temporary_folder.hpp"

#include <gtest/gtest.h>

namespace {

constexpr std::string_view head = "cards:\n  - slot: 3\n    kind: nic\n    endpoints: [{eid: 9}]\n";

/** The terminus of a card with one endpoint; text is the rest of the card. */
simulator::Terminus Described(const std::string& text) {
    const vantric::test::TemporaryFolder folder;
    const auto scenario =
        simulator::ReadScenario(folder.Write("card.yaml", std::string(head) + text));
    return simulator::Terminus(scenario.cards.front().endPoints.front().terminus);
}

/** The answer behind the three bytes of the header, which repeats the request's. */
std::string Answer(simulator::Terminus& terminus, std::string_view request, double seconds = 0.0) {
    const auto bytes = Bytes::FromHex(request);
    const auto response = simulator::Respond(terminus, bytes, simulator::Seconds(seconds));
    if (!response) {
        return "none";
    }
    EXPECT_EQ(bytes[0] & 0x1F, response->at(0));
    EXPECT_EQ(bytes[1], response->at(1));
    EXPECT_EQ(bytes[2], response->at(2));
    return HexText(std::span(*response).subspan(3));
}

/** What is asked of a card, and what it answers. */
struct Conversation {
    std::string card;
    std::vector<std::pair<std::string, std::string>> exchanges;
};

class Responder : public testing::TestWithParam<Conversation> {};

TEST_P(Responder, GivesTheseBytes) {
    auto terminus = Described(GetParam().card);
    for (const auto& [request, answer] : GetParam().exchanges) {
        EXPECT_EQ(answer, Answer(terminus, request)) << GetParam().card << request;
    }
}

void PrintTo(const Conversation& conversation, std::ostream* out) {
    *out << conversation.card;
}

/** GetPDR for the first part of a record, with room for all of it. */
std::string Record(const std::string& handle) {
    return "81 02 51 " + handle + " 00 00 00 00 01 ff 00 00 00";
}

/** GetPDR for a next part. */
std::string RecordPart(const std::string& transfer, const std::string& changeNumber) {
    return "81 02 51 00 00 00 00 " + transfer + " 00 00 00 00 ff 00 " + changeNumber + " 00";
}

const std::string fruTable = "81 04 02 00 00 00 00 01";

std::string Zeros(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += " 00";
    }
    return text;
}

const Conversation base[] = {
    {"    tid: 7\n",
     {
         {"81 00 02", "00 07"},
         {"01 00 02", "none"}, // no request bit
         {"c1 00 02", "none"}, // a datagram
         {"81 00", "none"},    // too short for a header
         {"9f 00 04", "00 35 00 00 00 00 00 00 00"},
         {"81 00 7f", "05"},    // no such command
         {"81 03 01", "20"},    // no such type
         {"81 00 02 00", "03"}, // too long
         {"81 02 11 01 00", "03"},
         // CRC-32 of 00 f0 f1 f1.
         {"81 00 03 00 00 00 00 01 00", "00 00 00 00 00 05 00 f0 f1 f1 ba be 9d 53"},
         {"81 00 03 00 00 00 00 01 07", "83"}, // no such type
         {"81 00 03 00 00 00 00 00 00", "80"}, // a next part that no part gave
         {"81 00 03 00 00 00 00 02 00", "81"}, // no such transfer operation
         {"81 00 05 00 00 f0 f1 f1", "00 7c" + Zeros(31)},
         {"81 00 05 02 00 f2 f2 f1", "00 00 00 03 00 02 00 00 00 00 00 03" + Zeros(21)},
         {"81 00 05 00 00 f0 f2 f1", "84"}, // no such version
         {"81 00 06 02 00 f2 f2 f1", "00"},
         {"81 00 06 02 00 f0 f2 f1", "84"},
         {"81 02 21 01 00 00 00", "80"}, // no such sensor
         {"81 02 50", "00 00 00 00 01 00 00 00 00 00 01 01 ea 07 00" + Zeros(13 + 4 + 4 + 4 + 1)},
         {Record("00 00 00 00"), "82"}, // no record
         {"81 04 01", "83"},            // no FRU data
         {fruTable, "85"},
         {"81 05 02", "00 00 00 00 00 00 00 01 00 01 00"},
     }},
    {"    types: {0: [1.1.0], 63: [1.0.0]}\n", {{"81 00 04", "00 01 00 00 00 00 00 00 80"}}},
    {"    types: {0: {versions: [1.1.0], commands: [5]}}\n",
     {{"81 00 05 00 00 f0 f1 f1", "00 20" + Zeros(31)}, {"81 00 02", "05"}}},
    {"    refuse: [{type: 0, command: 4, code: 0x21}]\n", {{"81 00 04", "21"}}},
    {"    types: {0: [1.1.0, 10.2]}\n    multipart: {versions: 5}\n",
     {{"81 00 03 00 00 00 00 01 02", "83"},
      {"81 00 03 00 00 00 00 01 00", "00 05 00 00 00 01 00 f0 f1 f1 00"},
      {"81 00 03 05 00 00 00 00 00", "00 0a 00 00 00 02 ff f2 10 57 f1"},
      {"81 00 03 0a 00 00 00 00 00", "00 00 00 00 00 04 63 2f"},
      {"81 00 03 0c 00 00 00 00 00", "80"}}},
};
INSTANTIATE_TEST_SUITE_P(Base, Responder, testing::ValuesIn(base));

const Conversation readings[] = {
    {"    sensors:\n"
     "      - {id: 0x0105, unit: celsius, size: sint16, resolution: 0.5, offset: -10, value: "
     "41.2,\n"
     "         thresholds: {warning-high: 40, critical-high: 50}}\n"
     "      - {id: 6, unit: watts, size: uint32, modifier: -3, init: enable, value: 1.5}\n",
     {
         // (41.2 + 10) / 0.5 is 102.4; above the warning threshold the state is 8.
         {"81 02 11 05 01 00", "00 03 00 00 08 00 08 66 00"},
         {"81 02 11 06 00 00", "00 04 01 00 00 00 00 dc 05 00 00"},
         {"81 02 10 06 00 04 00", "81"}, // a state that nobody sets
         {"81 02 10 06 00 00 00", "00"},
         {"81 02 11 06 00 00", "00 04 00 00 01 00 01 dc 05 00 00"},
         {"81 02 11 07 00 00", "80"}, // no such sensor
         {"81 02 10 07 00 00 00", "80"},
     }},
    {"    sensors: [{id: 1, size: sint8, value: -500}]\n",
     {{"81 02 11 01 00 00", "00 01 00 00 01 00 01 80"}}},
    {"    sensors: [{id: 1, size: uint64, value: 1e30}]\n",
     {{"81 02 11 01 00 00", "00 06 00 00 01 00 01 ff ff ff ff ff ff ff ff"}}},
    {"    sensors: [{id: 1, resolution: 0, value: 5}]\n",
     {{"81 02 11 01 00 00", "00 03 00 00 01 00 01 00 00"}}},
    {"    sensors: [{id: 1, reading-size: 9, operational: failed, present: fatal, value: 3}]\n",
     {{"81 02 11 01 00 00", "00 09 04 00 04 00 04 03 00 00 00 00 00 00 00"}}},
    {"    state-sensors: [{id: 300, members: [{set: health, state: 3}, "
     "{set: 33, state: 2, operational: failed}]}]\n",
     {{"81 02 21 2c 01 00 00", "00 02 00 03 03 03 04 02 02 02"}}},
};
INSTANTIATE_TEST_SUITE_P(Readings, Responder, testing::ValuesIn(readings));

const Conversation records[] = {
    {"    raw-pdrs: [\"01 02\", \"030405\"]\n",
     {
         {"81 02 50", "00 00 00 00 01 00 00 00 00 00 01 01 ea 07 00" + Zeros(13) +
                          " 02 00 00 00 05 00 00 00 03 00 00 00 00"},
         {Record("00 00 00 00"), "00 02 00 00 00 00 00 00 00 05 02 00 01 02"},
         {Record("02 00 00 00"), "00 00 00 00 00 00 00 00 00 05 03 00 03 04 05"},
         // As much of it as the request takes.
         {"81 02 51 02 00 00 00 00 00 00 00 01 02 00 00 00",
          "00 00 00 00 00 02 00 00 00 01 02 00 03 04"},
         // A change number with a first part.
         {"81 02 51 01 00 00 00 00 00 00 00 01 ff 00 01 00", "83"},
     }},
    {"    multipart: {pdr: 4}\n"
     "    raw-pdrs: [\"01000000010207000200\"]\n",
     {{Record("00 00 00 00"), "00 00 00 00 00 04 00 00 00 01 04 00 01 00 00 00"},
      {RecordPart("04", "00"), "83"}, // not the record's change number
      {RecordPart("04", "07"), "00 00 00 00 00 08 00 00 00 00 04 00 01 02 07 00"},
      {RecordPart("08", "07"), "00 00 00 00 00 00 00 00 00 04 02 00 02 00 cd"},
      {RecordPart("0a", "07"), "80"}}},
    {"    repository: {state: updating, record-count: 12, largest-record: 0x10203}\n"
     "    raw-pdrs: [\"0102\", \"030405\"]\n",
     {{"81 02 50", "00 01 00 00 01 00 00 00 00 00 01 01 ea 07 00" + Zeros(13) +
                       " 0c 00 00 00 05 00 00 00 03 02 01 00 00"}}},
    // Handle, version, type, change number, length; then the body.
    {"    repository: {change-number: 0x0102}\n"
     "    sensors: [{id: 0x0105, unit: celsius, size: uint8, resolution: 0.5, "
     "offset: -10, modifier: -1, init: enable, hysteresis: 2,\n"
     "      entity: {type: 68, instance: 2, container: 3}, "
     "thresholds: {warning-high: 9, critical-high: 10, fatal-low: 0.5},\n"
     "      range-format: sint16, name: A, value: 1}]\n",
     {{Record("00 00 00 00"),
       "00 02 00 00 00 00 00 00 00 05 4e 00 01 00 00 00 01 02 02 01 44 00 "
       "01 00 05 01 44 00 02 00 03 00 02 01 02 ff 00 00 00 00 00 00 00 01 00 "
       "00 00 00 3f 00 00 20 c1 00 00 00 00 02 23 00 00 00 00 00 00 00 80 3f ff 00 "
       "03 48 00 00 00 00 00 00 5a 00 00 00 64 00 00 00 00 00 05 00"}}},
    {"    sensors: [{id: 5, names: {en: \"T°\", de: \"𝄞\"}, value: 1}]\n",
     {{Record("02 00 00 00"),
       "00 00 00 00 00 00 00 00 00 05 22 00 02 00 00 00 01 06 00 00 18 00 "
       "01 00 05 00 01 02 65 6e 00 00 54 00 b0 00 00 64 65 00 d8 34 dd 1e 00 00"}}},
    {"    sensors: [{id: 5, form: compact, unit: kelvin, name: Inlet, "
     "entity: {type: 144, container: 1}, thresholds: {warning-high: 300, "
     "critical-low: -1}, value: 1}]\n",
     {{Record("01 00 00 00"),
       "00 00 00 00 00 00 00 00 00 05 36 00 01 00 00 00 01 15 00 00 2c 00 "
       "01 00 05 00 90 00 01 00 01 00 05 04 00 00 09 2c 01 00 00 00 00 00 00 "
       "00 00 00 00 ff ff ff ff 00 00 00 00 00 00 00 00 49 6e 6c 65 74"}}},
    {"    state-sensors: [{id: 5, members: [{set: health, states: [1, 2, 10]}, "
     "{set: 0x8001, states: []}]}]\n",
     {{Record("01 00 00 00"), "00 00 00 00 00 00 00 00 00 05 1f 00 01 00 00 00 01 04 00 00 15 00 "
                              "01 00 05 00 00 00 00 00 00 00 00 00 02 01 00 02 06 04 01 80 00"}}},
    {"    terminus-locators: [{type: eid, tid: 2, container: 4, value: \"0b\"}]\n",
     {{Record("01 00 00 00"), "00 00 00 00 00 00 00 00 00 05 13 00 01 00 00 00 01 01 00 00 09 00 "
                              "01 00 01 02 04 00 01 01 0b"}}},
    // Raw records, entities, sensors with their names, raw records.
    {"    raw-pdrs: [\"01020304056306\"]\n"
     "    raw-pdrs-first: [\"01020304056206\"]\n"
     "    entities:\n"
     "      - type: network-controller\n"
     "        name: controller\n"
     "        contains: [{type: ethernet, name: port}, {type: ethernet, instance: 2}]\n"
     "    logical-associations:\n"
     "      - {container-id: 9, container: controller, contains: [port]}\n"
     "    sensors: [{id: 1, form: compact, entity: port, value: 1}]\n",
     {{Record("01 00 00 00"), "00 02 00 00 00 00 00 00 00 05 07 00 01 02 03 04 05 62 06"},
      {Record("02 00 00 00"), "00 03 00 00 00 00 00 00 00 05 20 00 02 00 00 00 01 0f 00 00 16 00 "
                              "01 00 00 90 00 01 00 00 00 02 2c 01 01 00 01 00 2c 01 02 00 01 00"},
      {Record("03 00 00 00"), "00 04 00 00 00 00 00 00 00 05 1a 00 03 00 00 00 01 0f 00 00 10 00 "
                              "09 00 01 90 00 01 00 00 00 01 2c 01 01 00 01 00"},
      {Record("05 00 00 00"), "00 00 00 00 00 00 00 00 00 05 07 00 01 02 03 04 05 63 06"}}},
};
INSTANTIATE_TEST_SUITE_P(Records, Responder, testing::ValuesIn(records));

const Conversation fruAndFirmware[] = {
    // 5 bytes of record, 5 of SN, 6 of IANA, no padding, CRC-32.
    {"    fru: {serial-number: SN1, vendor-iana: 6796}\n",
     {{fruTable, "00 00 00 00 00 05 01 00 01 02 01 04 03 53 4e 31 0f 04 8c 1a 00 00 ad 32 ff b4"}}},
    {"    fru: {manufactured: 2021-03-12 07:05:09}\n",
     {{fruTable, "00 00 00 00 00 05 01 00 01 01 01 06 0d 00 00 00 00 00 09 05 07 0c 03 e5 07 06 "
                 "33 8f 12 b7"}}},
    {"    fru: [{set: 2, record: oem, encoding: 7, field-count: 9, fields: {200: {hex: "
     "\"ff\"}}}]\n",
     {{fruTable, "00 00 00 00 00 05 02 00 fe 09 07 c8 01 ff 81 e3 fd 33"}}},
    {"    fru: {raw-table: \"0102\"}\n",
     {{"81 04 01", "00 01 00 02 00 00 00 02 00 00 00 01 00 01 00 92 42 cc b6"}}},
    {"    fru: {raw-table: \"0102030405\"}\n"
     "    multipart: {fru: {size: 2, flags: [1, 0, 2]}}\n",
     {{"81 04 02 01 00 00 00 01", "00 02 00 00 00 01 01 02"},
      {"81 04 02 02 00 00 00 00", "00 04 00 00 00 00 03 04"},
      {"81 04 02 04 00 00 00 00", "00 00 00 00 00 02 05"}}},
    {"    firmware: {active: \"1.2\", type: utf8, pending: {hex: \"fe00\"}}\n",
     {{"81 05 02", "00 00 00 00 00 00 00 02 03 02 02 31 2e 32 fe 00"}}},
};
INSTANTIATE_TEST_SUITE_P(FruAndFirmware, Responder, testing::ValuesIn(fruAndFirmware));

TEST(Terminus, AValueMovesWithTime) {
    auto terminus =
        Described("    sensors:\n"
                  "      - {id: 1, value: {ramp: {from: 0, to: 100, seconds: 10}}}\n"
                  "      - {id: 2, value: {sine: {mean: 0, amplitude: 100, period: 8}}}\n");
    EXPECT_EQ("00 03 00 00 01 00 01 32 00", Answer(terminus, "81 02 11 01 00 00", 15.0));
    EXPECT_EQ("00 03 00 00 01 00 01 9c ff", Answer(terminus, "81 02 11 02 00 00", 6.0));
}

TEST(Terminus, ARandomWalkMovesWithinItsLimits) {
    simulator::MovingValue value(simulator::RandomWalk{50, 5, 45, 55, 1}, 7);
    double least = 50;
    double most = 50;
    for (int second = 0; second < 500; ++second) {
        const double now = value.At(simulator::Seconds(second));
        least = std::min(least, now);
        most = std::max(most, now);
    }
    EXPECT_GE(least, 45);
    EXPECT_LE(most, 55);
    EXPECT_LT(least, 47);
    EXPECT_GT(most, 53);
    // However long nobody looked, the answer comes at once.
    EXPECT_LE(value.At(simulator::Seconds(1e15)), 55);
}

} // namespace
