#include "modeling/vocabulary/vocabulary.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

namespace vantric {
namespace {

TEST(Vocabulary, HasAllItsRows) {
    EXPECT_EQ(entityWords.size(), 42U);
    EXPECT_EQ(stateSetNames.size(), 36U);
    EXPECT_EQ(stateValueNames.size(), 28U);
    EXPECT_EQ(healthSeverity.size(), 10U);
    EXPECT_EQ(virtualSensorLdids.size(), 14U);
    EXPECT_EQ(virtualInstanceSlots.size(), 8U);
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
    EXPECT_EQ(entityWords.at(299), "unkknown_connector_type");
}

TEST(Vocabulary, WordsCanStandInAnObjectPath) {
    for (const auto& [type, word] : entityWords) {
        EXPECT_TRUE(!word.empty() && std::ranges::all_of(word, [](unsigned char character) {
            return std::isalnum(character) != 0 || character == '_';
        })) << word;
    }
}

TEST(Vocabulary, KnowsTheStatesOfEveryStateSet) {
    for (const auto& [id, name] : stateSetNames) {
        ASSERT_TRUE(stateValueNames.contains(name)) << id;
        const auto& states = stateValueNames.at(name);
        EXPECT_EQ(states.begin()->first, 1) << name;
        EXPECT_EQ(states.rbegin()->first, states.size()) << name << " has a gap";
    }
}

TEST(Vocabulary, KnowsTheSeverityOfEveryHealthState) {
    for (const auto& [state, text] : stateValueNames.at("Health State")) {
        EXPECT_TRUE(healthSeverity.contains(text)) << text;
    }
}

TEST(Vocabulary, HasOneWiringForTheAcceleratorsOfABoard) {
    for (std::uint8_t gpu = 0; gpu < 8; ++gpu) {
        const std::string key = "GPU" + std::to_string(gpu);
        const auto row = std::ranges::find_if(
            virtualSensorLdids, [&key](const auto& candidate) { return candidate.first == key; });
        ASSERT_NE(row, virtualSensorLdids.end()) << key;
        EXPECT_EQ(row->second, "ProcAccelerator.Slot." + virtualInstanceSlots.at(gpu + 1) + "-1");
    }
}

} // namespace
} // namespace vantric
