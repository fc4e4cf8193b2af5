// SPDX-License-Identifier: Apache-2.0
/** An object manager: tells clients of the objects below a path. */
#pragma once

#include "sdbusplus/bus.hpp"
#include "sdbusplus/details.hpp"

namespace sdbusplus::server {

/** org.freedesktop.DBus.ObjectManager at one path, as long as it lives. */
class manager_t {
public:
    /** @param bus   the connection; sd-bus keeps it for the manager
     *  @param path  the root of the objects that it reports
     *  Without a connection, or with a malformed path, there is no manager and no exception: the
     *  objects are there all the same, unreported. */
    manager_t(bus_t& bus, const char* path);

private:
    details::SlotHandle slot;
};

} // namespace sdbusplus::server
