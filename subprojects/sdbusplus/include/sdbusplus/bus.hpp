// SPDX-License-Identifier: Apache-2.0
/** The handle of one D-Bus connection. */
#pragma once

#include "sdbusplus/message.hpp"

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace sdbusplus {

namespace details {
struct Access;
}

/** One reference to a connection. It may hold none (a null handle); calls then fail with EINVAL.
 *  A connection belongs to one thread, and so does this. */
class bus_t {
public:
    /** Takes a reference of its own on the connection. */
    explicit bus_t(sd_bus* bus);

    /** Takes over the caller's reference. What is still queued is sent when it is given up. */
    bus_t(sd_bus* bus, std::false_type);

    bus_t(bus_t&&) noexcept = default;
    bus_t& operator=(bus_t&&) noexcept = default;
    bus_t(const bus_t&) = delete;
    bus_t& operator=(const bus_t&) = delete;
    ~bus_t() = default;

    /** Returns the loop that the connection is attached to, or null. */
    sd_event* get_event() const;

    /** Lets the loop serve the connection.
     *  @param priority  of its event sources; 0 is normal, less is earlier
     *  @throws exception::SdBusError */
    void attach_event(sd_event* event, int priority);

    /** Takes the name on the bus, without replacing another holder.
     *  @throws exception::SdBusError if the name isn't to be had. */
    void request_name(const char* service);

    /** Starts a method call; its arguments are appended and then call() sends it.
     *  @throws exception::SdBusError if a name isn't valid. */
    message_t new_method_call(const char* service, const char* path, const char* interface,
                              const char* method);

    /** Sends the call and waits for its answer, for as long as sd-bus's own time-out.
     *  @throws exception::SdBusError if it can't be sent, isn't answered or is answered with an
     *          error. */
    message_t call(message_t& message);

    /** Announces interfaces of the object at path through the object manager above it. No signal
     *  goes out where there is no such manager or no connection; that isn't an error of the object.
     */
    void emit_interfaces_added(const char* path, const std::vector<std::string>& interfaces);

    /** Withdraws interfaces of the object at path, in the same way. */
    void emit_interfaces_removed(const char* path, const std::vector<std::string>& interfaces);

private:
    friend struct details::Access;

    struct Release {
        bool flush = false;
        void operator()(sd_bus* bus) const noexcept;
    };
    std::unique_ptr<sd_bus, Release> handle;
};

namespace bus {

/** Returns the calling thread's connection to the system bus. It is null if there is no bus. */
bus_t new_default_system();

} // namespace bus

} // namespace sdbusplus
