// SPDX-License-Identifier: Apache-2.0
/** The least that it takes to do what the daemon does: the same exchanges with the same endpoints
 *  through the same library or kernel, the same objects, the same PropertiesChanged signals, with
 * sd-bus alone and none of the daemon's code.
 *
 *      baseline LIST
 *
 *  LIST names the objects; `measure` writes it from what the daemon publishes. */
#include "baseline/objects.hpp"
#include "baseline/poller.hpp"

#include <malloc.h>
#include <sys/eventfd.h>
#include <systemd/sd-event.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <vector>

namespace {

using namespace measured_baseline;

constexpr auto serviceName = "com.korv.zenth.vantricd";

/** What the pollers hand to the main thread: the connection to the bus is that thread's own. */
class Handover {
public:
    explicit Handover(Objects& objects) : objects(objects), wake(eventfd(0, EFD_CLOEXEC)) {
        Checked(wake < 0 ? -errno : 0, "eventfd");
    }

    /** Any thread. */
    void Post(std::vector<Change> changes) {
        {
            const std::lock_guard lock(mutex);
            pending.insert(pending.end(), changes.begin(), changes.end());
        }
        eventfd_write(wake, 1);
    }

    /** Serves the changes on the loop of this thread. */
    void Attach(sd_event* event) {
        Checked(sd_event_add_io(event, nullptr, wake, EPOLLIN, OnWake, this), "sd_event_add_io");
    }

private:
    static int OnWake(sd_event_source* /*source*/, int descriptor, std::uint32_t /*events*/,
                      void* context) {
        eventfd_t posts = 0;
        eventfd_read(descriptor, &posts);
        auto& self = *static_cast<Handover*>(context);
        std::vector<Change> changes;
        {
            const std::lock_guard lock(self.mutex);
            changes.swap(self.pending);
        }
        for (const auto& [object, reading] : changes) {
            self.objects.Update(*object, reading);
        }
        return 0;
    }

    Objects& objects;
    int wake;
    std::mutex mutex;
    std::vector<Change> pending; ///< under the mutex
};

[[noreturn]] void Run(const char* listPath) {
    sd_event* event = nullptr;
    sd_bus* bus = nullptr;
    Checked(sd_event_default(&event), "sd_event_default");
    Checked(sd_bus_open_system(&bus), "sd_bus_open_system");
    for (const char* root :
         {"/xyz/openbmc_project/inventory/system", "/xyz/openbmc_project/sensors"}) {
        Checked(sd_bus_add_object_manager(bus, nullptr, root), "sd_bus_add_object_manager");
    }
    Objects objects(bus, listPath);
    Checked(sd_bus_request_name(bus, serviceName, 0), "sd_bus_request_name");
    Checked(sd_bus_attach_event(bus, event, SD_EVENT_PRIORITY_NORMAL), "sd_bus_attach_event");

    Handover handover(objects);
    handover.Attach(event);
    std::map<std::uint8_t, std::vector<Object*>> ofEndPoint;
    for (auto& object : objects.All()) {
        if (object.eid != 0) {
            ofEndPoint[object.eid].push_back(&object);
        }
    }
    Exchange::Begin();
    std::deque<Poller> pollers;
    for (const auto& [eid, polled] : ofEndPoint) {
        pollers
            .emplace_back(eid, polled,
                          [&](std::vector<Change> changes) { handover.Post(std::move(changes)); })
            .Start();
    }
    // The pollers use what stands here for as long as the process runs.
    std::_Exit(sd_event_loop(event) < 0 ? 1 : 0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: baseline LIST\n", stderr);
        return 2;
    }
    // The daemon's settings: memory in arenas that the daemon hasn't would not be fair.
    constexpr int mappedBlockThreshold = 65536; // bytes
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_MMAP_THRESHOLD, mappedBlockThreshold);
    try {
        Run(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "baseline: %s\n", error.what());
        std::_Exit(1);
    }
}
