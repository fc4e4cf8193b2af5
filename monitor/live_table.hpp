/** The table on the screen, kept fresh. */
#pragma once

#include "bus_watcher.hpp"
#include "options.hpp"
#include "screen.hpp"

#include <chrono>

namespace monitor {

/** Runs the event loop and shows the watched objects until it is told to stop. */
class LiveTable {
public:
    /** The loop serves the watcher's bus. All must outlive the table.
     *  @throws std::system_error if the loop refuses. */
    LiveTable(sd_event* event, const BusWatcher& watcher, Screen& screen);

    /** Shows the table until the options' time is over, a signal asks for the end, the bus or the
     *  screen is gone, or, with once, until the objects are known. Returns the process's exit
     *  status: 0, or 1 if the bus is gone or nothing was ever published. */
    int Run(const Options& options);

private:
    using Clock = std::chrono::steady_clock;

    static int OnSignal(sd_event_source* source, const struct signalfd_siginfo* info, void* table);

    std::vector<std::string> Frame() const;
    bool Finished(const Options& options, Clock::time_point end) const;
    void Wait(Clock::time_point until);

    sd_event* event;
    const BusWatcher& watcher;
    Screen& screen;
    bool stop = false;
};

} // namespace monitor
