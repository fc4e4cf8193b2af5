/** vantric-monitor: shows in the terminal what vantricd publishes. */
#include "bus_watcher.hpp"
#include "live_table.hpp"
#include "options.hpp"
#include "screen.hpp"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <system_error>

namespace {

monitor::EventHandle NewEvent() {
    sd_event* event = nullptr;
    const int result = sd_event_new(&event);
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), "event loop");
    }
    return monitor::EventHandle(event);
}

monitor::BusHandle OpenSystemBus(sd_event* event) {
    sd_bus* raw = nullptr;
    int result = sd_bus_open_system(&raw);
    monitor::BusHandle bus(raw);
    if (result >= 0) {
        result = sd_bus_attach_event(raw, event, SD_EVENT_PRIORITY_NORMAL);
    }
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), "system bus");
    }
    return bus;
}

int Run(const monitor::Options& options) {
    const monitor::EventHandle event = NewEvent();
    const monitor::BusHandle bus = OpenSystemBus(event.get());
    monitor::BusWatcher watcher(bus.get());
    monitor::Screen screen(STDOUT_FILENO);
    return monitor::LiveTable(event.get(), watcher, screen).Run(options);
}

} // namespace

int main(int argc, char** argv) {
    const auto options = monitor::ParseOptions(argc, argv);
    if (!options) {
        return 2;
    }
    if (options->help) {
        std::fputs(monitor::usage, stdout);
        return 0;
    }
    try {
        return Run(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantric-monitor: %s\n", error.what());
        return 1;
    }
}
