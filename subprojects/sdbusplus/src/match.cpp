// SPDX-License-Identifier: Apache-2.0
#include "sdbusplus/bus/match.hpp"

#include <exception>

namespace sdbusplus::bus {

namespace {

/** Stands between sd-bus and the function. */
int OnMessage(sd_bus_message* raw, void* context, sd_bus_error* error) {
    try {
        message_t message(raw);
        (*static_cast<match_t::callback_t*>(context))(message);
        return 0;
    } catch (const std::exception& e) {
        return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, e.what());
    } catch (...) {
        return sd_bus_error_set_const(error, SD_BUS_ERROR_FAILED, "unknown exception");
    }
}

} // namespace

match_t::match_t(bus_t& bus, const char* rule, callback_t callback)
    : function(std::make_unique<callback_t>(std::move(callback))) {
    sd_bus_slot* added = nullptr;
    details::Check("sd_bus_add_match", sd_bus_add_match(details::Access::handle(bus), &added, rule,
                                                        &OnMessage, function.get()));
    slot.reset(added);
}

} // namespace sdbusplus::bus
