// SPDX-License-Identifier: Apache-2.0
/** What the program does from its options to its end. */
#pragma once

#include "bus_watcher.hpp"
#include "keys.hpp"
#include "options.hpp"
#include "terminal.hpp"
#include "view.hpp"

#include <sdeventplus/event.hpp>

#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <vector>

namespace monitor {

/** Watches the system bus and shows the cards, once or until it is told to stop. */
class Program {
public:
    /** @throws std::exception, whose text says what to do, if there is no bus. */
    explicit Program(Options options);

    /** Returns when the cards have been shown as the options ask: once, or until their time is
     *  over, a signal or a key asks for the end, or the output is closed.
     *  @throws std::exception, whose text says what to do, if the bus went away or there was
     *          nothing to show. */
    void Run();

private:
    using Clock = std::chrono::steady_clock;
    struct Close {
        void operator()(sd_bus* bus) const noexcept { sd_bus_close_unref(bus); }
    };
    using Bus = std::unique_ptr<sd_bus, Close>;

    static Bus OpenBus(const sdeventplus::Event& event);
    static int OnSignal(sd_event_source* source, const struct signalfd_siginfo* info,
                        void* program);
    static int OnInput(sd_event_source* source, int fd, std::uint32_t events, void* program);

    void ShowOnce();
    void Follow();
    void FollowOnTerminal(Clock::time_point end);
    void FollowOnPaper(Clock::time_point end);
    void CatchSignals(std::initializer_list<int> numbers);
    void HandleSignal(Terminal& terminal);
    void HandleKeys(const Terminal& terminal);
    bool Draw(Terminal& terminal);
    bool Print() const;
    void Wait(Clock::time_point until) const;
    bool Ended(Clock::time_point end) const;
    void CheckPublished() const;
    std::vector<Card> Cards() const;
    Heading Title() const;

    Options options;
    sdeventplus::Event event;
    Bus bus;
    BusWatcher watcher;
    View view;
    std::size_t page = 1; ///< lines of the table on the screen
    KeyReader keys;
    Clock::time_point lastInput;
    Clock::time_point nextDraw;
    int signal = 0; ///< one that concerns the terminal and hasn't been handled
    bool stop = false;
};

} // namespace monitor
