// SPDX-License-Identifier: Apache-2.0
#include "sdbusplus/server/manager.hpp"

namespace sdbusplus::server {

manager_t::manager_t(bus_t& bus, const char* path) {
    sd_bus_slot* added = nullptr;
    if (sd_bus_add_object_manager(details::Access::handle(bus), &added, path) >= 0) {
        slot.reset(added);
    }
}

} // namespace sdbusplus::server
