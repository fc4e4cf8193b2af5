// SPDX-License-Identifier: Apache-2.0
/** Keeps an object model in step with what the daemon publishes. */
#pragma once

#include "object_model.hpp"

#include <systemd/sd-bus.h>

#include <memory>
#include <string>
#include <vector>

namespace monitor {

/** Reads both object managers of the service at the start and whenever it gets a new owner, and
 *  follows its signals in between. Runs on the event loop that the bus is attached to. */
class BusWatcher {
public:
    /** Starts to watch. The bus must outlive the watcher.
     *  @throws std::system_error if the bus refuses. */
    explicit BusWatcher(sd_bus* bus);
    BusWatcher(const BusWatcher&) = delete;
    BusWatcher& operator=(const BusWatcher&) = delete;

    const ObjectModel& Model() const { return model; }

    /** Whether both object managers have answered since the service's last change of owner. */
    bool Complete() const { return pending.empty(); }

    /** Whether the service has an owner, as far as the bus has told. */
    bool ServicePresent() const { return present; }

    /** Whether the connection to the bus is gone; nothing follows then. */
    bool Lost() const { return lost; }

    /** Number of messages that couldn't be understood. Their content is missing from the model. */
    unsigned Misunderstood() const { return misunderstood; }

private:
    using Reaction = void (BusWatcher::*)(sd_bus_message*);
    struct Unref {
        void operator()(sd_bus_slot* slot) const noexcept { sd_bus_slot_unref(slot); }
    };
    using Slot = std::unique_ptr<sd_bus_slot, Unref>;

    template <Reaction reaction>
    static int React(sd_bus_message* message, void* watcher, sd_bus_error* error);
    template <Reaction reaction>
    void Watch(const std::string& rule);
    void Fetch();

    void OnObjects(sd_bus_message* message);
    void OnInterfacesAdded(sd_bus_message* message);
    void OnInterfacesRemoved(sd_bus_message* message);
    void OnPropertiesChanged(sd_bus_message* message);
    void OnOwnerChanged(sd_bus_message* message);
    void OnDisconnected(sd_bus_message* message);

    sd_bus* bus;
    std::vector<Slot> matches;
    std::vector<Slot> pending; ///< calls that wait for their answer
    ObjectModel model;
    bool present = false;
    bool lost = false;
    unsigned misunderstood = 0;
};

} // namespace monitor
