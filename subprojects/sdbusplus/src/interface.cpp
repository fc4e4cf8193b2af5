// SPDX-License-Identifier: Apache-2.0
#include "sdbusplus/server/interface.hpp"

#include <exception>

namespace sdbusplus::server {

namespace {

/** The one copy of a path that the interfaces of an object share: they come one after the other.
 */
std::shared_ptr<const std::string> Shared(const char* path) {
    thread_local std::weak_ptr<const std::string> latest;
    auto shared = latest.lock();
    if (!shared || *shared != path) {
        shared = std::make_shared<const std::string>(path);
        latest = shared;
    }
    return shared;
}

} // namespace

interface_t::interface_t(bus_t& bus, const char* path, const char* name, const vtable_t* vtable,
                         void* context)
    : connection(details::Access::handle(bus)), path(Shared(path)), name(name) {
    sd_bus_slot* added = nullptr;
    details::Check("sd_bus_add_object_vtable",
                   sd_bus_add_object_vtable(details::Access::handle(bus), &added, path, name,
                                            vtable, context));
    slot.reset(added);
}

interface_t::~interface_t() {
    try {
        emit_removed();
    } catch (const std::exception&) {
        // Out of memory: the signal is lost, and the object goes without it.
    }
}

void interface_t::emit_added() {
    if (!announced) {
        announced = true;
        connection.emit_interfaces_added(path->c_str(), {name});
    }
}

void interface_t::emit_removed() {
    if (announced) {
        announced = false;
        connection.emit_interfaces_removed(path->c_str(), {name});
    }
}

void interface_t::property_changed(const char* property) {
    char* names[] = {const_cast<char*>(property), nullptr};
    sd_bus_emit_properties_changed_strv(details::Access::handle(connection), path->c_str(), name,
                                        names);
}

} // namespace sdbusplus::server
