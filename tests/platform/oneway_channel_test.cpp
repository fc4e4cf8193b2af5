// SPDX-License-Identifier: Apache-2.0
#include "platform/child_process.hpp"

#include <oneway_channel.hpp>
#include <systemd/sd-event.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <latch>
#include <map>
#include <stdexcept>
#include <thread>

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::MatchesRegex;
using vantric::test::CaptureWrites;
using vantric::test::InAChild;

/** A loop with the process's channel on it. Its test runs in a child, where the channel is new. */
class Loop {
public:
    Loop() : event(sdeventplus::Event::get_new()) {}

    int Register() {
        return OneWayChannel::GetInstance().RegisterEventLoop(
            event, this, [](void* context) { ++static_cast<Loop*>(context)->wakeUps; });
    }

    /** Turns the loop, without waiting, until it has nothing to do. Returns whether anything ran. A
     *  slow machine needs several turns for what a fast one does in one. */
    bool RunDry() {
        bool ran = false;
        while (sd_event_run(event.get(), 0) > 0) {
            ran = true;
        }
        return ran;
    }

    /** Turns the loop until done() holds; a time limit makes a hang a failure. */
    template <typename Condition>
    void RunUntil(const Condition& done) {
        const auto deadline = std::chrono::steady_clock::now() + 30s;
        while (!done()) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline);
            ASSERT_GE(sd_event_run(event.get(), 10'000), 0);
        }
    }

    sdeventplus::Event event;
    int wakeUps = 0;
};

int Post(std::function<void()> body) {
    return OneWayChannel::GetInstance().Execute(
        [body = std::move(body)](void*, void*, unsigned long) {
            body();
            return 0;
        },
        nullptr, 0, false);
}

/** Runs body in a child, with a loop that has the channel on it. */
void OnALoop(const std::function<void(Loop&)>& body) {
    InAChild([&] {
        Loop loop;
        ASSERT_EQ(0, loop.Register());
        body(loop);
    });
}

TEST(OneWayChannel, IsOneForAllThreadsKeepsTheOrderOfEachAndLosesNothing) {
    InAChild([] {
        constexpr int threadCount = 4;
        constexpr int requestCount = 2000;
        std::map<int, std::vector<int>> seen;
        std::latch together(threadCount);
        std::latch begun(threadCount);
        std::vector<std::jthread> posters;
        for (int thread = 0; thread < threadCount; ++thread) {
            posters.emplace_back([&, thread] {
                together.arrive_and_wait();
                for (int request = 0; request < requestCount; ++request) {
                    EXPECT_EQ(0,
                              Post([&seen, thread, request] { seen[thread].push_back(request); }));
                    if (request == 0) {
                        begun.count_down();
                    }
                }
            });
        }
        begun.wait(); // each has posted before there is a loop
        Loop loop;
        ASSERT_EQ(0, loop.Register());
        loop.RunUntil([&] {
            return seen.size() == threadCount && std::ranges::all_of(seen, [](const auto& each) {
                       return each.second.size() == requestCount;
                   });
        });
        posters.clear();
        EXPECT_FALSE(loop.RunDry());
        for (const auto& [thread, requests] : seen) {
            EXPECT_TRUE(std::ranges::is_sorted(requests)) << "thread " << thread;
        }
    });
}

TEST(OneWayChannel, TakesABurstOfAnyLengthBeforeTheLoopTurns) {
    OnALoop([](Loop& loop) {
        constexpr int burst = 100'000; // more bytes than a pipe takes
        int handled = 0;
        for (int request = 0; request < burst; ++request) {
            ASSERT_EQ(0, Post([&] { ++handled; }));
        }
        loop.RunUntil([&] { return handled == burst; });
        EXPECT_FALSE(loop.RunDry());
    });
}

TEST(OneWayChannel, LeavesTheLoopItsTurnWhenHandlersPostAgain) {
    OnALoop([](Loop& loop) {
        std::function<void()> again = [&] { Post(again); };
        Post(again);

        bool otherRan = false;
        const auto runOther = [](sd_event_source*, void* ran) {
            *static_cast<bool*>(ran) = true;
            return 0;
        };
        ASSERT_LE(0, sd_event_add_defer(loop.event.get(), nullptr, runOther, &otherRan));
        loop.RunUntil([&] { return otherRan && loop.wakeUps > 2; });
    });
}

TEST(OneWayChannel, SurvivesAHandlerThatThrows) {
    const auto writes = CaptureWrites([] {
        Loop loop;
        ASSERT_EQ(0, loop.Register());
        std::vector<int> seen;
        Post([&] { seen.push_back(1); });
        Post([] { throw std::runtime_error("card gone"); });
        Post([] { throw 5; });
        Post([&] { seen.push_back(2); });
        EXPECT_TRUE(loop.RunDry());
        Post([&] { seen.push_back(3); });
        EXPECT_TRUE(loop.RunDry());
        EXPECT_THAT(seen, ElementsAre(1, 2, 3));
    });
    EXPECT_THAT(writes,
                ElementsAre(MatchesRegex("<3>oneway_channel\\.[0-9]+\\.[A-Za-z]+: Handler failed : "
                                         "card gone\n"),
                            MatchesRegex("<3>oneway_channel\\.[0-9]+\\.[A-Za-z]+: Handler failed"
                                         "\n")));
}

TEST(OneWayChannel, StaysWithTheParentOverAForkWhichTheChildTells) {
    const auto writes = CaptureWrites([] {
        setenv("TRACELOG_LEVEL", "4", 1);
        Loop loop;
        ASSERT_EQ(0, loop.Register());
        int handled = 0;
        Post([&] { ++handled; });
        InAChild([&] {
            Loop own;
            // A second registration of one channel would be refused.
            EXPECT_EQ(0, own.Register());
            EXPECT_FALSE(own.RunDry());
            EXPECT_EQ(handled, 0);
            Post([&] { handled += 10; });
            EXPECT_TRUE(own.RunDry());
            EXPECT_EQ(handled, 10);
            InAChild([] { EXPECT_EQ(0, Post([] {})); });
        });
        EXPECT_TRUE(loop.RunDry());
        EXPECT_EQ(handled, 1);
    });
    const auto line =
        MatchesRegex("<6>oneway_channel\\.[0-9]+\\.~OneWayChannel: Destructor\\. fork "
                     "happened\\? \\(NOT Recommended to fork with multiple "
                     "threads\\)\n");
    EXPECT_THAT(writes, ElementsAre(line, line));
}

} // namespace
