/** The daemon: brings up the D-Bus side and the device manager, and runs the main event loop. */
#include "common/log.hpp"
#include "common/thread_name.hpp"
#include "dbus_handler/channel_publisher.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/platform_reads.hpp"
#include "devicemanager/device_manager.hpp"

#include <malloc.h>

#include <cstdlib>
#include <memory>
#include <thread>

namespace {

constexpr int mappedBlockThreshold = 65536; // bytes

} // namespace

int main() {
    using namespace vantric;

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
    std::_Exit(status != 0 ? status : EXIT_FAILURE);
}
