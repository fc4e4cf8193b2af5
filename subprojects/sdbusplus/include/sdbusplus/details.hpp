// SPDX-License-Identifier: Apache-2.0
/** The door between the wrappers: only they reach the handles of each other. */
#pragma once

#include "sdbusplus/exception.hpp"

#include <systemd/sd-bus.h>

#include <memory>

namespace sdbusplus::details {

/** Hands the raw handle of a wrapper to another wrapper; the reference stays where it is. */
struct Access {
    template <typename Wrapper>
    static auto* handle(const Wrapper& wrapper) noexcept {
        return wrapper.handle.get();
    }
};

/** Gives up the reference on a slot. */
struct SlotUnref {
    void operator()(sd_bus_slot* slot) const noexcept { sd_bus_slot_unref(slot); }
};

/** Owns one reference on a slot: what was added to the bus goes with it. */
using SlotHandle = std::unique_ptr<sd_bus_slot, SlotUnref>;

/** Hands on the result of a call of sd-bus that went well.
 *  @throws exception::SdBusError if the result is negative; its text begins with function. */
inline int Check(const char* function, int result) {
    if (result < 0) {
        throw exception::SdBusError(-result, function);
    }
    return result;
}

} // namespace sdbusplus::details
