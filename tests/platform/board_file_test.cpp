// SPDX-License-Identifier: Apache-2.0
/** The board file, and the libraries that ask no other process. */
#include "board_file.hpp"
#include "pldm_cmds/bytes.hpp"
#include "support/temporary_folder.hpp"

#include <hubcast.h>
#include <slotcatalog.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace vantric::test {

namespace {

const char* const example = std::getenv("BOARD_EXAMPLE");

board::BoardFile Read(std::string text) {
    const TemporaryFolder folder;
    std::ranges::replace(text, '\'', '"');
    return board::ReadBoardFile(folder.Write("board.json", text));
}

/** The mistakes, without the file's path and with ' for ". */
std::vector<std::string> Mistakes(const board::BoardFile& file) {
    std::vector<std::string> mistakes;
    for (std::string mistake : file.mistakes) {
        std::ranges::replace(mistake, '"', '\'');
        mistakes.push_back(mistake.substr(mistake.find(": ") + 2));
    }
    return mistakes;
}

/** A mistake is named with its place and what is expected there, and costs its entry only. */
TEST(BoardFile, AMistakeIsNamedAndCostsItsEntry) {
    const std::string slot = "'slot': 3, 'medium': 'vdm'";
    const std::string ids = "'class': 'nic', 'vendor': 1, 'device': 2";
    const std::vector<std::array<std::string, 3>> rows{
        {"endpoints", "'eid': 7, " + slot, ".eid: expected a number from 8 to 254, not 7"},
        {"endpoints", "'eid': '0x1g', " + slot,
         ".eid: expected a number from 8 to 254, not '0x1g'"},
        {"endpoints", slot, ": expected either 'uuid', or 'eid' and perhaps 'network'"},
        {"endpoints", "'uuid': '5f2c1a0e', " + slot,
         ".uuid: expected a UUID such as 5f2c1a0e-0000-4000-8000-000000000001"},
        {"endpoints", "'eid': 9, " + slot,
         ": expected one entry for EID 9 of network 1, and this is the second"},
        {"endpoints", "'eid': 10, 'slot': 4, 'medium': 'vdm'",
         ".slot: expected the number of an entry of 'slots' that isn't embedded, not 4"},
        {"endpoints", "'eid': 10, 'slot': 3", ": expected the key 'medium'"},
        {"endpoints", "'eid': 10, 'slot': 3, 'medium': 'usb'",
         ".medium: expected one of 'vdm', 'i2c', not 'usb'"},
        {"endpoints", "'eid': 10, 'bdf': '3b:20.0', " + slot,
         ".bdf: expected an address such as '3b:00.0', or a number from 0 to 65535"},
        {"endpoints", "'eid': 10, 'eed': 1, " + slot, ".'eed': expected no such key here"},
        {"slots", "'slot': 3, " + ids, ".slot: expected a slot that no entry before it has, not 3"},
        {"slots", "'slot': 4, 'embedded': 1, " + ids, ".embedded: expected true or false, not 1"},
        {"accelerators", "'vendor': 1, 'device': 2, 'sensors': [1, 2, 3, 4, 5]",
         ".sensors: expected a list of 1 to 4 sensor ids"},
        {"accelerators", "'vendor': 1, 'device': 2, 'sensors': [-1]",
         ".sensors: expected numbers from 0 to 65535"},
    };
    for (const auto& [list, entry, mistake] : rows) {
        std::string text = "{'slots': [{'slot': 3, " + ids + "}], 'endpoints': [{'eid': 9, " +
                           slot +
                           "}], 'accelerators': [{'vendor': 1, 'device': 2, 'sensors': [7]}]}";
        text.insert(text.find("}]", text.find(list)) + 1, ", {" + entry + '}');
        const auto file = Read(text);
        EXPECT_THAT(Mistakes(file), testing::ElementsAre(list + "[1]" + mistake));
        const auto& board = file.board;
        EXPECT_EQ(3U, board.slots.size() + board.endpoints.size() + board.accelerators.size());
    }
}

TEST(BoardFile, AFileThatIsNoBoardIsEmptyAndNamed) {
    const std::pair<const char*, const char*> rows[] = {
        {"{\n 'slots': [}", "expected JSON: parse error at line 2, column 12: "},
        {"[]", "the file: expected an object, not a list"},
        {"{'slots': 1}", "slots: expected a list, not 1"},
        {"{'slots': ['a']}", "slots[0]: expected an object, not 'a'"},
        {"", "expected a board file: nothing in it"},
    };
    for (const auto& [text, mistake] : rows) {
        EXPECT_THAT(Mistakes(Read(text)), testing::Contains(testing::StartsWith(mistake))) << text;
    }
    EXPECT_THAT(board::ReadBoardFile("/nowhere").mistakes,
                testing::ElementsAre("/nowhere: expected a board file: No such file or directory"));
}

TEST(SlotCatalog, AnswersFromTheExample) {
    EXPECT_THAT(board::ReadBoardFile(example).mistakes, testing::IsEmpty());
    EXPECT_EQ(7U, board::ReadBoardFile(example).board.endpoints.size());
    setenv("VANTRIC_BOARD", example, 1);
    std::uint32_t groups = 0;
    std::uint32_t capacity = 0;
    std::uint32_t reserved = 1;
    ASSERT_EQ(0, SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &groups, &capacity, &reserved));
    EXPECT_EQ(1U, groups);
    Bytes records(capacity * sizeof(SlotCatalogRecord));
    const auto read = [&](std::uint32_t group, std::uint32_t room) {
        std::uint8_t count = 0;
        return SlotCatalogDeviceData(SLOTCATALOG_ALL, group, &count, &capacity, records.data(),
                                     room) == 0
                   ? count
                   : -1;
    };
    EXPECT_EQ(-1, read(1, 255));
    EXPECT_EQ(2, read(0, 2)) << "no more than there is room for";
    EXPECT_EQ(5, read(0, 255));
    const Bytes embedded = Slice(records, std::size_t{4} * 98, std::size_t{5} * 98);
    EXPECT_EQ("b3 15 21 10", HexText(Slice(records, 5, 9)));
    EXPECT_EQ("b3 15 40 00", HexText(Slice(records, 49, 53)));
    EXPECT_EQ("06", HexText(Slice(records, 70, 71)));
    EXPECT_EQ("01 00 00 00 01 00 00 00 00 01", HexText(Slice(records, 81, 91)));
    EXPECT_EQ("02", HexText(Slice(embedded, 70, 71)));

    void* entries = nullptr;
    ASSERT_EQ(1, SlotCatalogAllDevices(&entries));
    const std::unique_ptr<void, decltype(&std::free)> owned(entries, std::free);
    const auto* const bytes = static_cast<const std::uint8_t*>(entries);
    EXPECT_EQ("16 00 00 00", HexText({bytes, 4}));
    EXPECT_EQ("de 10 30 23 de 10 c1 16", HexText({bytes + 60, 8}));
    EXPECT_EQ("01 00 1e 00 95 01 95 01", HexText({bytes + 114, 8})) << "the last one fills up";
}

TEST(Hubcast, TakesASubscription) {
    void* context = nullptr;
    const auto never = [](void*, const char*, std::uintptr_t) { FAIL(); };
    EXPECT_EQ(0, hubcast_subscriber_usrctx_init(&context, "vantric", never, nullptr));
    EXPECT_EQ(0, hubcast_subscribe_notification(context, "PLDMFWUpdateStart$1$FWUpdateStart$"));
}

} // namespace

} // namespace vantric::test
