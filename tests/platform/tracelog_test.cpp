#include "platform/child_process.hpp"

#include <tracelog.h>

#include <gmock/gmock.h>

#include <cerrno>
#include <climits>
#include <thread>

namespace {

using test::CaptureWrites;
using testing::ElementsAre;
using Writes = std::vector<std::string>;

/// Writes one line at each of the given levels, with TRACELOG_LEVEL as given.
Writes WriteLevels(const char* shown, const std::vector<int>& levels) {
    return CaptureWrites([&] {
        shown == nullptr ? unsetenv("TRACELOG_LEVEL") : setenv("TRACELOG_LEVEL", shown, 1);
        for (const int level : levels) {
            tracelog_printf(level, 119, "level %d\n", level);
        }
    });
}

struct LevelCase {
    const char* shown;
    Writes expected;
};

TEST(Tracelog, ShowsLinesUpToTheLevelAskedFor) {
    const std::string one = "<3>level 1\n";
    const std::string two = "<4>level 2\n";
    const std::string four = "<6>level 4\n";
    const std::string nine = "<7>level 9\n";
    const std::vector<LevelCase> cases{
        {nullptr, {one, two}},
        {"", {one, two}},
        {"0", {}},
        {"1", {one}},
        {"4", {one, two, four}},
        {"9", {one, two, four, nine}},
        {"loud", {one, two}},
        {"4x", {one, two}},
        {"-1", {one, two}},
        {"99999999999999999999", {one, two}},
        {"100", {one, two, four, nine}},
    };
    for (const LevelCase& each : cases) {
        SCOPED_TRACE(each.shown == nullptr ? "unset" : each.shown);
        EXPECT_EQ(WriteLevels(each.shown, {1, 2, 4, 9}), each.expected);
    }
}

TEST(Tracelog, EndsALineExactlyOnce) {
    const Writes writes = CaptureWrites([] {
        tracelog_printf(1, 119, "none");
        tracelog_printf(1, 119, "one\n");
        tracelog_printf(1, 119, "two\n\n");
        tracelog_printf(1, 119, "%s", "");
    });
    EXPECT_THAT(writes, ElementsAre("<3>none\n", "<3>one\n", "<3>two\n", "<3>\n"));
}

TEST(Tracelog, LetsNoTextForgeALineOrReachTheTerminal) {
    const Writes writes = CaptureWrites(
        [] { tracelog_printf(1, 119, "name %s end\n", "a\n<3>forged\r\x1b[2J\x7f\xc3\xa4"); });
    EXPECT_THAT(writes, ElementsAre("<3>name a\\x0a<3>forged\\x0d\\x1b[2J\\x7f\\xc3\\xa4 end\n"));
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

TEST(Tracelog, KeepsTheErrnoOfItsCaller) {
    CaptureWrites([] {
        close(STDERR_FILENO);
        errno = ENOTTY;
        tracelog_printf(1, 119, "lost\n");
        EXPECT_EQ(errno, ENOTTY);
    });
}

TEST(Tracelog, KeepsLinesOfSeveralThreadsApart) {
    constexpr int threadCount = 4;
    constexpr int lineCount = 200;
    const Writes writes = CaptureWrites([] {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < threadCount; ++thread) {
            threads.emplace_back([thread] {
                for (int line = 0; line < lineCount; ++line) {
                    tracelog_printf(1, 119, "thread %d line %d of %d\n", thread, line, lineCount);
                }
            });
        }
    });
    EXPECT_EQ(writes.size(), static_cast<std::size_t>(threadCount * lineCount));
    EXPECT_THAT(writes,
                testing::Each(testing::MatchesRegex("<3>thread [0-9]+ line [0-9]+ of 200\n")));
}

} // namespace
