#include "vocabulary/vocabulary.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vantric {
namespace {

/** FNV-1a, 64 bits. */
std::uint64_t Sum(const std::string& text) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const unsigned char byte : text) {
        sum = (sum ^ byte) * 0x100000001B3;
    }
    return sum;
}

std::string Text(const std::string& text) {
    return text;
}

std::string Text(unsigned number) {
    return std::to_string(number);
}

std::string Text(const Ldid& ldid) {
    return ldid.Text();
}

/** The rows of a table as "key=word" lines. */
template <typename Table>
std::string Lines(const Table& table) {
    std::string lines;
    for (const auto& [key, word] : table) {
        lines += Text(key) + "=" + Text(word) + "\n";
    }
    return lines;
}

/** Clients compare the words letter for letter. The sums were computed apart from this code, of a
 *  list of the words and not of its tables. */
TEST(Vocabulary, HasItsWordsLetterForLetter) {
    std::vector<std::pair<std::string, std::string>> stateTexts;
    for (const auto& [set, states] : stateValueNames) {
        for (const auto& [value, text] : states) {
            stateTexts.emplace_back(set + "/" + std::to_string(value), text);
        }
    }
    const struct {
        const char* table;
        std::string lines;
        std::uint64_t sum;
    } rows[]{
        {"entityWords", Lines(entityWords), 0x74D07EBCCF970C06},
        {"stateSetNames", Lines(stateSetNames), 0xCB1E8E59C15CC1C0},
        {"stateValueNames", Lines(stateTexts), 0x317CAAF1A3F0971E},
        {"healthSeverity", Lines(healthSeverity), 0x30263353E973E21F},
        {"virtualSensorLdids", Lines(virtualSensorLdids), 0x4ED8AA7F184C15BC},
        {"virtualInstanceSlots", Lines(virtualInstanceSlots), 0xC1028D543CDC0E41},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Sum(row.lines), row.sum) << row.table << " is now\n" << row.lines;
    }
}

TEST(Vocabulary, SpellsTheWordsThatLookWrong) {
    EXPECT_EQ(entityWords.at(144), "networkcontroller");
    EXPECT_EQ(entityWords.at(152), "GPU");
    EXPECT_EQ(entityWords.at(299), "unkknown_connector_type");
    EXPECT_EQ(stateSetNames.at(32769), "OEM_State_Set_32769");
    EXPECT_EQ(stateSetNames.at(32784), "OEM State Set");
    EXPECT_EQ(stateValueNames.at("Version").at(2), "Version Change Detected - Compatible");
    EXPECT_EQ(stateValueNames.at("Bus Error Status").at(6), "Bus timeout");
    EXPECT_EQ(healthSeverity.at("Upper Non-Critical"), 4);
    EXPECT_EQ(healthSeverity.at("Lower Fatal"), 4);
}

TEST(Vocabulary, KeepsTheGapsInTheConnectorTypes) {
    EXPECT_TRUE(entityWords.contains(203));
    EXPECT_FALSE(entityWords.contains(204));
    EXPECT_TRUE(entityWords.contains(205));
    for (std::uint16_t type = 216; type <= 289; ++type) {
        EXPECT_FALSE(entityWords.contains(type)) << type;
    }
    for (std::uint16_t type = 293; type <= 298; ++type) {
        EXPECT_FALSE(entityWords.contains(type)) << type;
    }
}

TEST(Vocabulary, HasOneWiringForTheAcceleratorsOfABoard) {
    for (std::uint8_t gpu = 0; gpu < 8; ++gpu) {
        const std::string key = "GPU" + std::to_string(gpu);
        const auto row = std::ranges::find_if(
            virtualSensorLdids, [&key](const auto& candidate) { return candidate.first == key; });
        ASSERT_NE(row, virtualSensorLdids.end()) << key;
        EXPECT_EQ(row->second.SlotBeforeDash(), virtualInstanceSlots.at(gpu + 1));
    }
}

} // namespace
} // namespace vantric
