/** Owners of libsystemd's handles. */
#pragma once

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <memory>

namespace monitor {

/** Calls the release function of a handle. */
template <auto release>
struct Release {
    template <typename Handle>
    void operator()(Handle* handle) const {
        release(handle);
    }
};

/** Closes without sending what is still queued: there is nothing that the monitor owes the bus. */
using BusHandle = std::unique_ptr<sd_bus, Release<sd_bus_close_unref>>;
using SlotHandle = std::unique_ptr<sd_bus_slot, Release<sd_bus_slot_unref>>;
using EventHandle = std::unique_ptr<sd_event, Release<sd_event_unref>>;

} // namespace monitor
