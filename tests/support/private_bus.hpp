/** A D-Bus daemon for one test process. */
#pragma once

#include "support/temporary_folder.hpp"

#include <string>

#include <sys/types.h>

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

    /** Stops the daemon, waits for its end and removes its folder. */
    ~PrivateBus();

    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /** The folder in which the daemon's socket is; a test may put files of its own there. */
    const std::string& Folder() const { return folder.path.native(); }

    /** The address of the bus, as D-Bus writes it. */
    const std::string& Address() const { return address; }

    /** The daemon's process. */
    pid_t Process() const { return process; }

private:
    void Start(const std::string& config, const std::string& log);
    void Stop();

    TemporaryFolder folder;
    std::string address;
    pid_t process = -1;
};

} // namespace vantric::test
