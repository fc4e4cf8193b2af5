// SPDX-License-Identifier: Apache-2.0
#include "monitor/text.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using monitor::NaturalOrder;
using monitor::Printable;

TEST(Text, ShowsNothingThatMovesTheCursor) {
    EXPECT_EQ(Printable("NIC in Slot 3"), "NIC in Slot 3");
    EXPECT_EQ(Printable("a\x1b[2J\n\tb\x7f"), "a?[2J??b?");
    EXPECT_EQ(Printable("\xc3\xa4\xe2\x82\xac."), "??.") << "one mark for each UTF-8 character";
    EXPECT_EQ(Printable("\xc2\x9bJ"), "?J") << "a control character of eight bits";
    EXPECT_EQ(Printable(std::string("a\0b", 3)), "a?b");
}

TEST(Text, OrdersNumbersByTheirValue) {
    const std::vector<std::string> sorted{
        "",
        "NIC in Slot 3",
        "NIC in Slot 3 Port 1",
        "NIC in Slot 10",
        "s_1",
        "s_1_ctrl_2",
        "s_2",
        "s_10",
        "s_18446744073709551616",
        "s_18446744073709551617",
    };
    for (std::size_t left = 0; left < sorted.size(); ++left) {
        for (std::size_t right = 0; right < sorted.size(); ++right) {
            EXPECT_EQ(NaturalOrder(sorted[left], sorted[right]), left <=> right)
                << sorted[left] << " and " << sorted[right];
        }
    }
}

} // namespace
