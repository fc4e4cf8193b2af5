// SPDX-License-Identifier: Apache-2.0
/** The rows of the table that tells sd-bus what an interface has. */
#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>

namespace sdbusplus {

/** One row. A table is an array of rows from vtable::start() to vtable::end(), and lives as long as
 *  the interface that it was given to. */
using vtable_t = sd_bus_vtable;

namespace vtable {

/** Flags of a property. */
namespace property_ {
/** The value doesn't change as long as the object lives. */
inline constexpr std::uint64_t const_ = SD_BUS_VTABLE_PROPERTY_CONST;
/** Changes are signalled together with the new value. */
inline constexpr std::uint64_t emits_change = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
} // namespace property_

/** The first row. */
constexpr vtable_t start() {
    return vtable_t SD_BUS_VTABLE_START(0);
}

/** A property that clients can read.
 *  @param member     its name
 *  @param signature  its D-Bus type
 *  @param get        appends the value to a reply; called on the connection's thread
 *  @param flags      of property_, joined by "|" */
constexpr vtable_t property(const char* member, const char* signature, sd_bus_property_get_t get,
                            std::uint64_t flags = 0) {
    return vtable_t SD_BUS_PROPERTY(member, signature, get, 0, flags);
}

/** A property that clients can read and, being root or of the process's own user, write.
 *  @param set  takes the new value from the message; called on the connection's thread */
constexpr vtable_t property(const char* member, const char* signature, sd_bus_property_get_t get,
                            sd_bus_property_set_t set, std::uint64_t flags = 0) {
    return vtable_t SD_BUS_WRITABLE_PROPERTY(member, signature, get, set, 0, flags);
}

/** A signal that the interface can emit.
 *  @param signature  the D-Bus types of its arguments */
constexpr vtable_t signal(const char* member, const char* signature, std::uint64_t flags = 0) {
    return vtable_t SD_BUS_SIGNAL(member, signature, flags);
}

/** The last row. */
constexpr vtable_t end() {
    return vtable_t SD_BUS_VTABLE_END;
}

} // namespace vtable

} // namespace sdbusplus
