// SPDX-License-Identifier: Apache-2.0
#include "vocabulary/vocabulary.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

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
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Sum(row.lines), row.sum) << row.table << " is now\n" << row.lines;
    }
}

} // namespace
} // namespace vantric
