// SPDX-License-Identifier: Apache-2.0
/** What mctpd publishes on the system bus. */
#pragma once

#include "kernel_sockets.hpp"

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace mctplink {

/** An endpoint that speaks PLDM and isn't the board's own. */
struct Endpoint {
    Peer address;
    std::string uuid; ///< in lower case; empty where it has none

    bool operator==(const Endpoint&) const = default;
};

template <auto Unref>
struct UnrefWith {
    template <typename T>
    void operator()(T* object) const noexcept {
        Unref(object);
    }
};
using BusHandle = std::unique_ptr<sd_bus, UnrefWith<sd_bus_close_unref>>;
using SlotHandle = std::unique_ptr<sd_bus_slot, UnrefWith<sd_bus_slot_unref>>;
using EventHandle = std::unique_ptr<sd_event, UnrefWith<sd_event_unref>>;
using SourceHandle = std::unique_ptr<sd_event_source, UnrefWith<sd_event_source_disable_unref>>;

/** Follows mctpd's endpoints.
 *
 * Signals only say that something changes. Once they have been quiet for half a second, all objects
 * are read at once, so that nothing is put together from pieces. All of it happens on the thread of
 * the event loop. */
class Mctpd {
public:
    struct Listener {
        /** Something begins to change: an endpoint comes or goes, or the service itself. */
        std::function<void()> onDiscovery;
        /** The endpoints as they stand; none while the service is away. */
        std::function<void(std::vector<Endpoint> endpoints)> onEndpoints;
    };

    explicit Mctpd(Listener listener) : listener(std::move(listener)) {}
    Mctpd(const Mctpd&) = delete;
    Mctpd& operator=(const Mctpd&) = delete;
    ~Mctpd() = default;

    /** Begins. False if there is no system bus. */
    bool Start(sd_event* event);

private:
    static int OnMatch(sd_bus_message* message, void* self, sd_bus_error* error);
    static int OnOwner(sd_bus_message* message, void* self, sd_bus_error* error);
    static int OnInterfaces(sd_bus_message* message, void* self, sd_bus_error* error);
    static int OnQuiet(sd_event_source* source, std::uint64_t now, void* self);
    static int OnObjects(sd_bus_message* message, void* self, sd_bus_error* error);

    bool Match(const std::string& rule, sd_bus_message_handler_t handler, SlotHandle& slot);
    void Change();
    void WaitFor(std::uint64_t microseconds);
    void AskForObjects();
    void TakeObjects(sd_bus_message* reply);

    Listener listener;
    BusHandle bus;
    SlotHandle ownerMatch;
    SlotHandle interfacesMatch;
    SlotHandle call; ///< while the objects are asked for
    SourceHandle timer;
    bool discovering = false;
};

} // namespace mctplink
