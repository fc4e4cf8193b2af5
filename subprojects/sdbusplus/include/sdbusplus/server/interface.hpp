// SPDX-License-Identifier: Apache-2.0
/** One interface of one published object. */
#pragma once

#include "sdbusplus/bus.hpp"
#include "sdbusplus/details.hpp"
#include "sdbusplus/vtable.hpp"

#include <memory>
#include <string>

namespace sdbusplus::server {

/** Registers a table of properties and signals at a path, as long as it lives. Belongs to the
 *  connection's thread. */
class interface_t {
public:
    /** @param bus       the connection; the interface takes a reference of its own
     *  @param path      the object's path
     *  @param name      the interface's name; outlives this
     *  @param vtable    the rows from vtable::start() to vtable::end(); outlives this
     *  @param context   handed to the functions of the rows
     *  @throws exception::SdBusError "sd_bus_add_object_vtable" if the path or a row isn't valid,
     *          or if the object has this interface already. */
    interface_t(bus_t& bus, const char* path, const char* name, const vtable_t* vtable,
                void* context);

    /** Withdraws the interface if it is still announced, and takes it off the bus. */
    ~interface_t();

    interface_t(const interface_t&) = delete;
    interface_t& operator=(const interface_t&) = delete;

    /** Announces the interface with InterfacesAdded, unless it is announced. */
    void emit_added();

    /** Withdraws the interface with InterfacesRemoved, if it is announced. */
    void emit_removed();

    /** Emits PropertiesChanged with the property's value. A property that never changes by its
     *  flags is ignored, and so is a lost connection. */
    void property_changed(const char* property);

private:
    bus_t connection;
    std::shared_ptr<const std::string> path;
    const char* name;
    details::SlotHandle slot;
    bool announced = false;
};

} // namespace sdbusplus::server
