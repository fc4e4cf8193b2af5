// SPDX-License-Identifier: Apache-2.0
/** A subscription to signals. */
#pragma once

#include "sdbusplus/bus.hpp"
#include "sdbusplus/details.hpp"

#include <functional>
#include <memory>
#include <string>

namespace sdbusplus::bus {

/** Calls a function for every message that fits a rule, until it goes away. */
class match_t {
public:
    using callback_t = std::function<void(message_t&)>;

    /** @param bus       the connection; the match keeps a reference of sd-bus's own on it
     *  @param rule      a D-Bus match rule
     *  @param callback  called on the thread that serves the connection. An exception that leaves
     *                   it ends there: the message counts as failed, the connection goes on.
     *  @throws exception::SdBusError if the rule is malformed or can't be added. */
    match_t(bus_t& bus, const char* rule, callback_t callback);
    match_t(bus_t& bus, const std::string& rule, callback_t callback)
        : match_t(bus, rule.c_str(), std::move(callback)) {}

private:
    // On the heap, so that sd-bus finds it where it was after a move. Goes last.
    std::unique_ptr<callback_t> function;
    details::SlotHandle slot;
};

} // namespace sdbusplus::bus
