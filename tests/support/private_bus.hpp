// SPDX-License-Identifier: Apache-2.0
/** A D-Bus daemon for one test process. */
#pragma once

#include "support/process.hpp"
#include "support/temporary_folder.hpp"

#include <optional>
#include <string>

namespace vantric::test {

/** Starts a dbus-daemon that lets everybody do everything, and makes it this process's system bus
 *  (and that of the processes it starts) through DBUS_SYSTEM_BUS_ADDRESS. It ends with this object,
 *  and also when the thread that made this object dies, however it does; so make it on the main
 *  thread. One at a time. */
class PrivateBus {
public:
    /** Returns when the daemon takes connections.
     *  @throws std::runtime_error with the daemon's own words if it doesn't start. */
    PrivateBus();

    /** Ends the daemon and removes its folder. */
    ~PrivateBus();

    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /** The folder in which the daemon's socket is; a test may put files of its own there. */
    const std::string& Folder() const { return folder.path.native(); }

    /** The daemon's process. */
    pid_t Process() const { return daemon->Id(); }

private:
    TemporaryFolder folder;
    std::optional<test::Process> daemon;
};

} // namespace vantric::test
