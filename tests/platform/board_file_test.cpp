/** The board file, and the PCIe table that comes from it. */
#include "board_file.hpp"
#include "pldm_cmds/bytes.hpp"
#include "support/temporary_folder.hpp"

#include <slotcatalog.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>

namespace vantric::test {

namespace {

const char* const example = std::getenv("BOARD_EXAMPLE");

TEST(BoardFile, TheExampleHasNoMistake) {
    const auto [read, mistakes] = board::ReadBoardFile(example);
    EXPECT_THAT(mistakes, testing::IsEmpty());
    EXPECT_EQ(5U, read.slots.size());
    EXPECT_EQ(7U, read.endpoints.size());
    EXPECT_EQ(1U, read.accelerators.size());
}

/** A mistake is named with its place and what is expected there, and costs its entry only. */
TEST(BoardFile, AMistakeIsNamedAndCostsItsEntry) {
    const std::string slot = R"("slot": 3, "medium": "vdm")";
    const std::string ids = R"("class": "nic", "vendor": 1, "device": 2)";
    const struct {
        const char* list;
        std::string entry;
        std::string mistake; // without the file's name; N stands for the entry
    } rows[] = {
        {"endpoints", R"("eid": 7, )" + slot, R"(N.eid: expected a number from 8 to 254, not 7)"},
        {"endpoints", R"("eid": "0x1g", )" + slot,
         R"(N.eid: expected a number from 8 to 254, not "0x1g")"},
        {"endpoints", slot, R"(N: expected either "uuid", or "eid" and perhaps "network")"},
        {"endpoints", R"("uuid": "5f2c1a0e", )" + slot,
         "N.uuid: expected a UUID such as 5f2c1a0e-0000-4000-8000-000000000001"},
        {"endpoints", R"("eid": 9, )" + slot,
         "N: expected one entry for EID 9 of network 1, and this is the second"},
        {"endpoints", R"("eid": 10, "slot": 4, "medium": "vdm")",
         R"(N.slot: expected the number of an entry of "slots" that isn't embedded, not 4)"},
        {"endpoints", R"("eid": 10, "slot": 3)", R"(N: expected the key "medium")"},
        {"endpoints", R"("eid": 10, "slot": 3, "medium": "usb")",
         R"(N.medium: expected one of "vdm", "i2c", not "usb")"},
        {"endpoints", R"("eid": 10, "bdf": "3b:20.0", )" + slot,
         R"(N.bdf: expected an address such as "3b:00.0", or a number from 0 to 65535)"},
        {"endpoints", R"("eid": 10, "type": "usb", )" + slot,
         R"(N.type: expected one of "pci", "accelerator", "bridge" or a number from 0 to 255, not "usb")"},
        {"endpoints", R"("eid": 10, "instance": 1, )" + slot,
         R"(N.instance: expected that only with "embedded": true)"},
        {"endpoints", R"("eid": 10, "eed": 1, )" + slot, "N.\"eed\": expected no such key here"},
        {"slots", R"("slot": 3, )" + ids,
         "N.slot: expected a slot that no entry before it has, not 3"},
        {"slots", R"("slot": 4, "embedded": 1, )" + ids,
         "N.embedded: expected true or false, not 1"},
        {"slots", R"("slot": 4, "cpu-affinity": 256, )" + ids,
         "N.cpu-affinity: expected a number from 0 to 255, not 256"},
        {"accelerators", R"("vendor": 1, "device": 2, "sensors": [1, 2, 3, 4, 5])",
         "N.sensors: expected a list of 1 to 4 sensor ids"},
        {"accelerators", R"("vendor": 1, "device": 2, "sensors": [-1])",
         "N.sensors: expected numbers from 0 to 65535"},
    };
    for (const auto& row : rows) {
        const std::map<std::string, std::string> good{
            {"slots", R"({"slot": 3, )" + ids + '}'},
            {"endpoints", R"({"eid": 9, )" + slot + '}'},
            {"accelerators", R"({"vendor": 1, "device": 2, "sensors": [7]})"}};
        std::string text;
        for (const auto& [list, entry] : good) {
            text += (text.empty() ? "{\"" : ", \"") + list + "\": [" + entry +
                    (list == row.list ? ", {" + row.entry + '}' : "") + ']';
        }
        const TemporaryFolder folder;
        const auto path = folder.Write("board.json", text + '}');
        const auto [read, mistakes] = board::ReadBoardFile(path);
        const auto mistake = row.list + std::string("[1]") + row.mistake.substr(1);
        EXPECT_THAT(mistakes, testing::ElementsAre(path + ": " + mistake));
        EXPECT_EQ(3U, read.slots.size() + read.endpoints.size() + read.accelerators.size());
    }
}

TEST(BoardFile, AFileThatIsNoBoardIsEmptyAndNamed) {
    const TemporaryFolder folder;
    const std::pair<const char*, std::string> rows[] = {
        {"{\n \"slots\": [}", "expected JSON: parse error at line 2, column 12: "},
        {"[]", "the file: expected an object, not a list"},
        {R"({"slots": 1, "x": 2})", "slots: expected a list, not 1"},
        {R"({"slots": ["a"]})", "slots[0]: expected an object, not \"a\""},
        {"", "expected a board file: nothing in it"},
    };
    for (const auto& [text, mistake] : rows) {
        const auto path = folder.Write("board.json", text);
        const auto file = board::ReadBoardFile(path);
        ASSERT_FALSE(file.mistakes.empty()) << text;
        EXPECT_THAT(file.mistakes[0], testing::StartsWith(path + ": " + mistake));
    }
    EXPECT_THAT(board::ReadBoardFile("/nowhere").mistakes,
                testing::ElementsAre("/nowhere: expected a board file: No such file or directory"));
}

TEST(SlotCatalog, AnswersFromTheBoardFile) {
    setenv("VANTRIC_BOARD", example, 1);
    std::uint32_t groups = 0;
    std::uint32_t capacity = 0;
    std::uint32_t reserved = 1;
    ASSERT_EQ(0, SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &groups, &capacity, &reserved));
    EXPECT_EQ(1U, groups);
    Bytes records(capacity * sizeof(SlotCatalogRecord));
    std::uint8_t count = 0;
    ASSERT_EQ(
        0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 0, &count, &capacity, records.data(), capacity));
    EXPECT_EQ(5, count);
    EXPECT_NE(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 1, &count, &capacity, records.data(), 255));
    EXPECT_EQ(0, SlotCatalogDeviceData(SLOTCATALOG_ALL, 0, &count, &capacity, records.data(), 2));
    EXPECT_EQ(2, count) << "no more than there is room for";
    SlotCatalogRecord record;
    std::memcpy(&record, records.data(), sizeof(record));
    EXPECT_EQ("b3 15 21 10", HexText(Slice(records, 5, 9)));
    EXPECT_EQ("b3 15 40 00", HexText(Slice(records, 49, 53)));
    EXPECT_EQ(SLOTCATALOG_LOCATOR_SLOT, record.locatorType);
    EXPECT_EQ(1, record.deviceClass);
    EXPECT_EQ(1, record.cpuAffinity);
    std::memcpy(&record, records.data() + 4 * sizeof(record), sizeof(record));
    EXPECT_EQ(SLOTCATALOG_LOCATOR_EMBEDDED, record.locatorType);

    void* entries = nullptr;
    ASSERT_EQ(1, SlotCatalogAllDevices(&entries));
    const std::unique_ptr<void, decltype(&std::free)> owned(entries, std::free);
    const auto* const bytes = static_cast<const std::uint8_t*>(entries);
    EXPECT_EQ("16 00 00 00", HexText({bytes, 4}));
    EXPECT_EQ("de 10 30 23 de 10 c1 16", HexText({bytes + 60, 8}));
    EXPECT_EQ("01 00 1e 00 95 01 95 01", HexText({bytes + 114, 8})) << "the last one fills up";
}

} // namespace

} // namespace vantric::test
