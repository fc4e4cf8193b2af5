// SPDX-License-Identifier: Apache-2.0
/** The daemon: brings up the D-Bus side and the device manager, and runs the main event loop. */
#include "common/log.hpp"
#include "common/thread_name.hpp"
#include "dbus_handler/channel_publisher.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/platform_reads.hpp"
#include "devicemanager/device_manager.hpp"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

namespace {

constexpr int mappedBlockThreshold = 65536; // bytes

constexpr const char* usage =
    "usage: vantricd [--help | --version]\n"
    "Publishes the PLDM sensors and the inventory of PCIe cards on the system bus, until it is\n"
    "stopped. The manual page vantricd(8) tells more.\n";

/** Deals with the arguments of the command line.
 *  @return the exit status; nothing where there are none, and the daemon is to run */
std::optional<int> TakeArguments(int argc, char** argv) {
    if (argc == 1) {
        return std::nullopt;
    }
    const std::string_view word = argv[1];
    if (argc == 2 && (word == "--help" || word == "-h")) {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    if (argc == 2 && word == "--version") {
        std::puts("vantricd " VANTRIC_VERSION);
        return EXIT_SUCCESS;
    }
    constexpr int wrongUsage = 2;
    std::fprintf(stderr, "vantricd: \"%s\" is no argument; vantricd --help tells which are\n",
                 argv[argc - 1]);
    return wrongUsage;
}

} // namespace

int main(int argc, char** argv) {
    using namespace vantric;
    if (const auto status = TakeArguments(argc, argv)) {
        return *status;
    }

    // One arena for all threads, and large blocks on their own, so that memory goes back to the
    // system when cards go.
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_MMAP_THRESHOLD, mappedBlockThreshold);
    VANTRIC_LOG(LOG_LEVEL_ERROR, "PLDM Modeling process started.\n");

    DBusHandler& dbusHandler = DBusHandler::instance();
    ChannelPublisher publisher;
    const BusUdidReader udids;
    const auto deviceManager =
        std::make_unique<DeviceManager>(BusDoors{.publisher = publisher, .udids = udids});
    StartThread("PLDM_DevMgr", [&deviceManager] { deviceManager->DevMgrThread(); }).detach();

    // The loop ends only when the bus is lost. Device threads may then sit in a command for most of
    // a minute; the supervisor should start a new process at once instead of waiting for them.
    const int status = dbusHandler.Run();
    std::fputs("vantricd: the system bus isn't there or was lost; start dbus, or set "
               "DBUS_SYSTEM_BUS_ADDRESS to its address\n",
               stderr);
    std::_Exit(status != 0 ? status : EXIT_FAILURE);
}
