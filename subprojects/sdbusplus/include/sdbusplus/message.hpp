// SPDX-License-Identifier: Apache-2.0
/** The handle of one D-Bus message. */
#pragma once

#include "sdbusplus/message/append.hpp"
#include "sdbusplus/message/native_types.hpp"
#include "sdbusplus/message/read.hpp"

#include <systemd/sd-bus.h>

#include <memory>
#include <type_traits>

namespace sdbusplus {

namespace details {
struct Access;
}

/** One reference to a message. Values are C++ types: bool, the integers from 8 to 64 bits, double,
 *  std::string, message::object_path, std::vector (array), std::map and std::unordered_map
 *  (dictionary), std::tuple (structure), std::variant; std::pair is the entry of a dictionary. */
class message_t {
public:
    /** Takes a reference of its own on the message. */
    explicit message_t(sd_bus_message* message);

    /** Takes over the caller's reference. */
    message_t(sd_bus_message* message, std::false_type);

    /** Appends the values in the order given. Strings may be C strings and string views as well.
     *  @throws exception::SdBusError if one doesn't fit, for instance a malformed path. */
    template <typename... T>
    void append(const T&... values) {
        (message::details::Append(handle.get(), values), ...);
    }

    /** Reads the next values. Containers are replaced. A variant whose type is none of the
     *  alternatives is skipped and leaves its place as it was.
     *  @throws exception::SdBusError if the message goes on with other types or ends. What was read
     *          before stays read. */
    template <typename... T>
    void read(T&... values) {
        (message::details::Read(handle.get(), values), ...);
    }

    /** Returns the name of the method or signal, or null for an answer; valid as long as this. */
    const char* get_member() const;

    /** Tells whether the message is the answer to a call that failed. */
    bool is_method_error() const;

private:
    friend struct details::Access;

    struct Unref {
        void operator()(sd_bus_message* message) const noexcept { sd_bus_message_unref(message); }
    };
    std::unique_ptr<sd_bus_message, Unref> handle;
};

} // namespace sdbusplus
