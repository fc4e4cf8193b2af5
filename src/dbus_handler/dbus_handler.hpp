// SPDX-License-Identifier: Apache-2.0
/** The process's presence on the system bus. */
#pragma once

#include "dbus_handler/loop_exit.hpp"
#include "dbus_handler/published_objects.hpp"

#include <sdbusplus/bus.hpp>
#include <sdbusplus/bus/match.hpp>
#include <sdbusplus/server/manager.hpp>
#include <sdeventplus/event.hpp>

#include <memory>
#include <vector>

namespace vantric {

/** Owns the connection, the service name, the object managers and the published objects. */
class DBusHandler {
public:
    /** Returns the one instance. The first call, on the main thread before others exist, connects
     *  to the bus, takes the name and makes the channel's requests run on the thread's event loop.
     *  What fails of that is logged, and the instance does without. */
    static DBusHandler& instance();

    DBusHandler(const DBusHandler&) = delete;
    DBusHandler& operator=(const DBusHandler&) = delete;

    /** Starts the thread that listens to the platform's signals and runs the main event loop.
     *  Returns when the loop ends, which it does when either of the two connections to the bus is
     *  lost: with a status for exit() that isn't 0. */
    int Run();

    /** Body of the thread "dbusEventHandler": sets dbusReady once both signal matches stand, and
     *  serves them on a connection of its own. Returns only if that fails. */
    void RegisterForDBUSEvents();

    PublishedObjects& Objects() { return objects; }

private:
    DBusHandler();

    sd_bus* connection = nullptr; ///< what bus holds, for libsystemd's own calls; may be null
    std::shared_ptr<sdbusplus::bus_t> bus;
    sdeventplus::Event event;
    sdbusplus::server::manager_t inventoryManager;
    sdbusplus::server::manager_t sensorsManager;

    PublishedObjects objects;

    /** Belongs to "dbusEventHandler". */
    std::vector<std::unique_ptr<sdbusplus::bus::match_t>> signalMatches;

    LoopExit loopExit;
};

} // namespace vantric
