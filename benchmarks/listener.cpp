// SPDX-License-Identifier: Apache-2.0
/** Listens to the sensors' PropertiesChanged signals and keeps when each one came.
 *
 *      listener FILE
 *
 * It says "listening" when it does, and writes FILE when SIGTERM ends it: one line for each
 * property with the time in nanoseconds of the monotonic clock, the number of its signal, and the
 * object path, interface, property and value, separated by tabs. A value that is no number is "-".
 * Until then everything stays in memory, so that listening costs little. */
#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace {

constexpr auto rule = "type='signal',interface='org.freedesktop.DBus.Properties',"
                      "member='PropertiesChanged',"
                      "path_namespace='/xyz/openbmc_project/sensors'";

struct Change {
    std::int64_t time; // nanoseconds
    std::uint64_t signal;
    std::string path;
    std::string interface;
    std::string property;
    std::optional<double> value;
};

struct Heard {
    std::vector<Change> changes;
    std::uint64_t signals = 0;
};

int Checked(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), what);
    }
    return result;
}

template <typename T>
double ReadNumber(sd_bus_message* message, char type) {
    T number{};
    Checked(sd_bus_message_read_basic(message, type, &number), "a number");
    return static_cast<double>(number);
}

/** Reads the variant at hand, or skips it where it holds no number. */
std::optional<double> ReadValue(sd_bus_message* message) {
    const char* contents = nullptr;
    Checked(sd_bus_message_peek_type(message, nullptr, &contents), "a variant");
    const std::string type = contents;
    if (type.size() != 1 || std::strchr("bidquy", type[0]) == nullptr) {
        Checked(sd_bus_message_skip(message, "v"), "a value");
        return std::nullopt;
    }
    Checked(sd_bus_message_enter_container(message, 'v', contents), "a variant");
    std::optional<double> value;
    switch (type[0]) {
    case 'd':
        value = ReadNumber<double>(message, 'd');
        break;
    case 'b':
        value = ReadNumber<int>(message, 'b');
        break;
    case 'i':
        value = ReadNumber<std::int32_t>(message, 'i');
        break;
    case 'u':
        value = ReadNumber<std::uint32_t>(message, 'u');
        break;
    case 'q':
        value = ReadNumber<std::uint16_t>(message, 'q');
        break;
    default:
        value = ReadNumber<std::uint8_t>(message, 'y');
        break;
    }
    Checked(sd_bus_message_exit_container(message), "the end of a variant");
    return value;
}

void Take(sd_bus_message* message, Heard& heard, std::int64_t time) {
    const char* interface = nullptr;
    Checked(sd_bus_message_read(message, "s", &interface), "an interface");
    Checked(sd_bus_message_enter_container(message, 'a', "{sv}"), "the properties");
    while (Checked(sd_bus_message_enter_container(message, 'e', "sv"), "a property") > 0) {
        const char* property = nullptr;
        Checked(sd_bus_message_read(message, "s", &property), "a name");
        heard.changes.push_back({time, heard.signals, sd_bus_message_get_path(message), interface,
                                 property, ReadValue(message)});
        Checked(sd_bus_message_exit_container(message), "the end of a property");
    }
    ++heard.signals;
}

int OnSignal(sd_bus_message* message, void* context, sd_bus_error* /*error*/) {
    using std::chrono::nanoseconds;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    try {
        Take(message, *static_cast<Heard*>(context),
             std::chrono::duration_cast<nanoseconds>(now).count());
    } catch (const std::system_error& error) {
        std::fprintf(stderr, "listener: a signal that can't be read: %s\n", error.what());
        return -error.code().value();
    }
    return 0;
}

/** Waits for SIGTERM, and hears everything until then. */
void Listen(Heard& heard) {
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    sigprocmask(SIG_BLOCK, &ending, nullptr);

    sd_event* opened = nullptr;
    Checked(sd_event_new(&opened), "sd_event_new");
    const std::unique_ptr<sd_event, decltype(&sd_event_unref)> event(opened, sd_event_unref);
    Checked(sd_event_add_signal(event.get(), nullptr, SIGTERM, nullptr, nullptr), "SIGTERM");
    sd_bus* connected = nullptr;
    Checked(sd_bus_open_system(&connected), "the bus");
    const std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> bus(
        connected, sd_bus_flush_close_unref);
    Checked(sd_bus_add_match(bus.get(), nullptr, rule, OnSignal, &heard), "the match");
    Checked(sd_bus_attach_event(bus.get(), event.get(), SD_EVENT_PRIORITY_NORMAL),
            "the event loop");
    std::puts("listening");
    std::fflush(stdout);
    Checked(sd_event_loop(event.get()), "the event loop");
}

void Write(const Heard& heard, const char* path) {
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path, "w"),
                                                                  std::fclose);
    if (!file) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    for (const Change& change : heard.changes) {
        std::fprintf(file.get(), "%lld\t%llu\t%s\t%s\t%s\t", static_cast<long long>(change.time),
                     static_cast<unsigned long long>(change.signal), change.path.c_str(),
                     change.interface.c_str(), change.property.c_str());
        if (change.value) {
            std::fprintf(file.get(), "%.17g\n", *change.value);
        } else {
            std::fputs("-\n", file.get());
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: listener FILE\n", stderr);
        return 2;
    }
    try {
        Heard heard;
        Listen(heard);
        Write(heard, argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "listener: %s\n", error.what());
        return 1;
    }
    return 0;
}
