#include "live_table.hpp"

#include "interface_names.hpp"
#include "row_builder.hpp"
#include "table_renderer.hpp"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <system_error>

namespace monitor {

namespace {

using namespace std::chrono_literals;

/// How long a table asked for once waits for a service that doesn't answer.
constexpr std::chrono::seconds patience = 10s;
constexpr std::chrono::milliseconds terminalPeriod = 500ms;
constexpr std::chrono::milliseconds plainPeriod = 1000ms;

void Check(int result, const char* call) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), call);
    }
}

std::string TimeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 16> text{};
    std::strftime(text.data(), text.size(), "%H:%M:%S", &local);
    return text.data();
}

} // namespace

LiveTable::LiveTable(sd_event* event, const BusWatcher& watcher, Screen& screen)
    : event(event), watcher(watcher), screen(screen) {
    std::signal(SIGPIPE, SIG_IGN); // the screen reports a reader that has gone
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigset_t blocked;
        sigemptyset(&blocked);
        sigaddset(&blocked, number);
        Check(-pthread_sigmask(SIG_BLOCK, &blocked, nullptr), "pthread_sigmask");
        Check(sd_event_add_signal(event, nullptr, number, OnSignal, this), "sd_event_add_signal");
    }
}

int LiveTable::Run(const Options& options) {
    const auto start = Clock::now();
    const auto period = screen.IsTerminal() ? terminalPeriod : plainPeriod;
    auto end = Clock::time_point::max();
    if (options.duration) {
        end = start + *options.duration;
    } else if (options.once) {
        end = start + patience;
    }
    auto next = screen.IsTerminal() ? start : start + period;
    while (!Finished(options, end)) {
        if (!options.once && Clock::now() >= next) {
            next += period;
            stop = stop || !screen.Draw(Frame());
        }
        Wait(std::min(options.once ? end : next, end));
    }
    screen.Finish(Frame());
    if (watcher.Lost()) {
        std::fputs("vantric-monitor: the connection to the bus is lost\n", stderr);
        return 1;
    }
    return watcher.Model().EverPublished() ? 0 : 1;
}

int LiveTable::OnSignal(sd_event_source* /*source*/, const struct signalfd_siginfo* /*info*/,
                        void* table) {
    static_cast<LiveTable*>(table)->stop = true;
    return 0;
}

std::vector<std::string> LiveTable::Frame() const {
    std::string title = std::string(serviceName) +
                        (watcher.ServicePresent()
                             ? ": " + std::to_string(watcher.Model().Objects().size()) + " objects"
                             : " isn't on the bus") +
                        ", " + TimeOfDay();
    if (watcher.Misunderstood() > 0) {
        title += ", " + std::to_string(watcher.Misunderstood()) + " messages not understood";
    }
    const std::size_t width = screen.Width();
    std::vector<std::string> lines = RenderTable(BuildRows(watcher.Model()), width);
    lines.insert(lines.begin(), width == 0 ? title : title.substr(0, width));
    return lines;
}

bool LiveTable::Finished(const Options& options, Clock::time_point end) const {
    return stop || watcher.Lost() || (options.once && watcher.Complete()) || Clock::now() >= end;
}

void LiveTable::Wait(Clock::time_point until) {
    const auto left = std::max(until - Clock::now(), Clock::duration::zero());
    const auto wait = std::chrono::ceil<std::chrono::microseconds>(left);
    const int result = sd_event_run(event, static_cast<std::uint64_t>(wait.count()));
    if (result != -EINTR) {
        Check(result, "sd_event_run");
    }
}

} // namespace monitor
