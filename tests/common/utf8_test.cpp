// SPDX-License-Identifier: Apache-2.0
/** Any bytes become text that sd-bus takes. */
#include "common/utf8.hpp"

#include <gtest/gtest.h>

namespace vantric {

namespace {

const std::string bad = "\xEF\xBF\xBD";

TEST(ValidUtf8, ReplacesEachMaximalBadSubpart) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"plain ~\x01\x7F", "plain ~\x01\x7F"},
        {"\xC2\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\xC2\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {std::string("cut\0off", 7), "cut"},
        {std::string("\xC3\xA4\0x", 4), "\xC3\xA4"},
        {"\x80", bad},
        {"a\xFFz", "a" + bad + "z"},
        {"\xC0\xAF", bad + bad},
        {"\xC3", bad},
        {"\xC3(", bad + "("},
        {"\xE2\x82", bad},
        {"\xE2\x82z", bad + "z"},
        {"\xE0\x80\x80", bad + bad + bad},
        {"\xED\xA0\x80", bad + bad + bad},
        {"\xF0\x9F\x98", bad},
        {"\xF0\x80\x80\x80", bad + bad + bad + bad},
        {"\xF4\x90\x80\x80", bad + bad + bad + bad},
        {"\xF5\x80", bad + bad},
        {"\xF1\x80\xE1\x80\xC2\x62", bad + bad + bad + "b"},
        {"\xED\x9F\xBF\xEE\x80\x80", "\xED\x9F\xBF\xEE\x80\x80"},
        {"\xF4\x8F\xBF\xBD", "\xF4\x8F\xBF\xBD"},
        // Noncharacters, and their neighbours.
        {"\xEF\xBF\xBE", bad},
        {"\xEF\xB7\x90|\xEF\xB7\xAF", bad + "|" + bad},
        {"\xEF\xB7\x8F\xEF\xB7\xB0", "\xEF\xB7\x8F\xEF\xB7\xB0"},
        {"\xF0\x9F\xBF\xBF\xF4\x8F\xBF\xBE", bad + bad},
    };
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(text, ValidUtf8(bytes)) << testing::PrintToString(bytes);
    }
}

} // namespace

} // namespace vantric
