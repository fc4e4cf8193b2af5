// SPDX-License-Identifier: Apache-2.0
#include "platform/child_process.hpp"

#include <tracelog.h>

#include <gmock/gmock.h>

#include <climits>

namespace {

using testing::ElementsAre;
using vantric::test::CaptureWrites;
using Writes = std::vector<std::string>;

/** Writes one line at each of the given levels, with TRACELOG_LEVEL as given. */
Writes WriteLevels(const char* shown, const std::vector<int>& levels) {
    return CaptureWrites([&] {
        shown == nullptr ? unsetenv("TRACELOG_LEVEL") : setenv("TRACELOG_LEVEL", shown, 1);
        for (const int level : levels) {
            tracelog_printf(level, 119, "level %d\n", level);
        }
    });
}

TEST(Tracelog, ShowsLinesUpToTheLevelAskedFor) {
    const Writes all{"<3>level 1\n", "<4>level 2\n", "<6>level 4\n", "<7>level 9\n"};
    const std::pair<const char*, int> rows[] = {
        {nullptr, 2}, {"", 2},   {"0", 0},  {"1", 1},    {"4", 3},
        {"9", 4},     {"4x", 2}, {"-1", 2}, {"loud", 2}, {"99999999999999999999", 2},
    };
    for (const auto& [shown, count] : rows) {
        EXPECT_EQ(WriteLevels(shown, {1, 2, 4, 9}), Writes(all.begin(), all.begin() + count))
            << (shown == nullptr ? "unset" : shown);
    }
}

TEST(Tracelog, LetsNoTextForgeALineOrReachTheTerminal) {
    const Writes writes = CaptureWrites([] {
        tracelog_printf(1, 119, "none");
        tracelog_printf(1, 119, "two\n\n");
        tracelog_printf(1, 119, "name %s end\n", "a\n<3>forged\r\x1b[2J\x7f\xc3\xa4");
    });
    EXPECT_THAT(writes, ElementsAre("<3>none\n", "<3>two\n",
                                    "<3>name a\\x0a<3>forged\\x0d\\x1b[2J\\x7f\\xc3\\xa4 end\n"));
}

TEST(Tracelog, CutsALineToWhatAPipeTakesWhole) {
    const std::string plain(3 * PIPE_BUF, 'x');
    const std::string escaped(3 * PIPE_BUF, '\x01');
    const Writes writes = CaptureWrites([&] {
        tracelog_printf(1, 119, "%s\n", plain.c_str());
        tracelog_printf(1, 119, "%s\n", escaped.c_str());
    });
    ASSERT_EQ(writes.size(), 2U);
    for (const std::string& line : writes) {
        EXPECT_LE(line.size(), static_cast<std::size_t>(PIPE_BUF));
        EXPECT_GT(line.size(), static_cast<std::size_t>(PIPE_BUF - 16));
        EXPECT_THAT(line, testing::EndsWith("...\n"));
    }
}

} // namespace
