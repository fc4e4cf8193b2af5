// SPDX-License-Identifier: Apache-2.0
/** A client of the system bus, as another process would be one. */
#pragma once

#include <sdbusplus/message.hpp>

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <chrono>
#include <compare>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace vantric::test {

/** One signal that was on the bus. body is a MessageText(). */
struct Signal {
    std::string path;
    std::string interface;
    std::string member;
    std::string body;

    auto operator<=>(const Signal&) const = default;
};

/** The answer to a call. */
struct Answer {
    std::string error; ///< the D-Bus error's name; empty if the call went well
    std::string text;  ///< a MessageText() of the answer, or what the error says
};

/** Interface name, property name and ValueText(). */
using Interfaces = std::map<std::string, std::map<std::string, std::string>>;

/** A connection of its own, on the thread that made it. It records every signal on the bus from its
 *  construction on, apart from the bus's own. Who serves the objects may live in another process,
 * on another thread, or on this thread: then Serve() names it, and it is served while this waits.
 */
class BusClient {
public:
    /** How long this waits for anything before it gives up. */
    static constexpr std::chrono::seconds patience{30};

    /** Connects to the system bus.
     *  @throws std::runtime_error if there is none. */
    BusClient();

    /** Serves a connection of this thread while this waits. It outlives this. */
    void Serve(sd_bus* bus);

    /** Serves an event loop of this thread while this waits. It outlives this. */
    void Serve(sd_event* event);

    /** Waits until done() holds, which is asked after each piece of work. Returns the last done(),
     *  false if it took more than patience. */
    bool WaitUntil(const std::function<bool()>& done);

    /** Calls a method and waits for the answer. arguments are what sdbusplus::message_t appends. */
    template <typename... T>
    Answer Call(const char* service, const std::string& path, const char* interface,
                const char* method, const T&... arguments) {
        sdbusplus::message_t message(NewCall(service, path, interface, method), std::false_type());
        message.append(arguments...);
        return Send();
    }

    /** Sends a signal. values are what sdbusplus::message_t appends. */
    template <typename... T>
    void Emit(const std::string& path, const char* interface, const char* member,
              const T&... values) {
        sdbusplus::message_t message(NewSignal(path, interface, member), std::false_type());
        message.append(values...);
        Post();
    }

    /** Writes a property. T is the property's type. */
    template <typename T>
    Answer SetProperty(const char* service, const std::string& path, const char* interface,
                       const char* property, const T& value) {
        return Call(service, path, "org.freedesktop.DBus.Properties", "Set", interface, property,
                    std::variant<T>(value));
    }

    /** Reads a property.
     *  @throws std::runtime_error if it can't be read. */
    std::string GetProperty(const char* service, const std::string& path, const char* interface,
                            const char* property);

    /** Returns the objects that the object manager at path tells of, by path.
     *  @throws std::runtime_error if there is no such manager. */
    std::map<std::string, Interfaces> GetManagedObjects(const char* service,
                                                        const std::string& path);

    /** Waits until everything that the service sent before has arrived here: signals that aren't
     *  recorded then were not sent.
     *  @throws std::runtime_error if the service doesn't answer. */
    void Settle(const char* service);

    /** Returns the signals recorded so far, in their order on the bus. */
    const std::vector<Signal>& Signals() const { return signals; }

    /** Returns the signals recorded since the last call. */
    std::vector<Signal> TakeSignals();

private:
    struct BusUnref {
        void operator()(sd_bus* bus) const noexcept { sd_bus_flush_close_unref(bus); }
    };
    struct MessageUnref {
        void operator()(sd_bus_message* message) const noexcept { sd_bus_message_unref(message); }
    };
    using MessageHandle = std::unique_ptr<sd_bus_message, MessageUnref>;

    static int OnSignal(sd_bus_message* message, void* self, sd_bus_error* error);
    static int OnAnswer(sd_bus_message* message, void* self, sd_bus_error* error);

    sd_bus_message* NewCall(const char* service, const std::string& path, const char* interface,
                            const char* method);
    sd_bus_message* NewSignal(const std::string& path, const char* interface, const char* member);
    void Post();
    Answer Send();
    bool Work();
    void WaitForWork(std::chrono::steady_clock::time_point deadline);

    std::unique_ptr<sd_bus, BusUnref> bus;
    std::vector<sd_bus*> buses;
    std::vector<sd_event*> events;
    std::vector<Signal> signals;
    MessageHandle call;
    MessageHandle answer;
};

} // namespace vantric::test
