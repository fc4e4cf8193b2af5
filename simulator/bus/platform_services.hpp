// SPDX-License-Identifier: Apache-2.0
/** The platform's services on the system bus. */
#pragma once

#include "machine/machine.hpp"
#include "server/event_loop.hpp"

#include <string>
#include <systemd/sd-bus.h>

namespace simulator {

struct BusUnref {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

/** Plays, on one connection to the system bus, the host state object, the entity manager's asset
 *  objects, the inventory's signal for them, and the address service. */
class PlatformServices {
public:
    /** Takes the names and makes the objects: an asset for each card with a model, and an address
     *  object for each slot. Throws std::system_error. */
    PlatformServices(EventLoop& loop, Machine& machine);

    /** Switches the host, with the states in between. */
    void SetHost(bool on);

    /** Gives a slot's asset object a model, makes it if need be, and tells the inventory's
     *  listeners that it is there. Without a model it keeps the one that it has. Returns the
     *  model. */
    const std::string& AddFru(std::uint16_t slot, const std::optional<std::string>& model);

private:
    using Bus = std::unique_ptr<sd_bus, BusUnref>;
    using Registration = std::unique_ptr<sd_bus_slot, BusUnref>;

    struct Asset {
        std::string model;
        Registration registration;
    };
    struct Addresses {
        Machine* machine;
        std::uint16_t slot;
        Registration registration;
    };

    void MakeAsset(std::uint16_t slot, const std::string& model);
    Registration Register(const std::string& path, const char* interface,
                          const sd_bus_vtable* properties, void* context);
    void TellHostState(const char* state);

    Bus bus;
    std::string hostState;
    Registration host;
    Registration inventory;
    std::map<std::uint16_t, Asset> assets;
    std::map<std::uint16_t, Addresses> addresses;
};

} // namespace simulator
