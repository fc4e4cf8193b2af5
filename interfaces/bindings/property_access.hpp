// SPDX-License-Identifier: Apache-2.0
/** What all generated bindings share: the way from sd-bus's calls to a class's operations.
 *
 * A binding describes a property to these templates by a struct with the class (Owner), the type on
 * the bus (Wire), read(owner) and, where clients may write, write(owner, value). */
#pragma once

#include <sdbusplus/message.hpp>

#include <systemd/sd-bus.h>

#include <cmath>
#include <exception>
#include <stdexcept>
#include <utility>

namespace bindings {

/** A client wrote a value of the right type that the property can't have. */
struct InvalidValue : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

/** Tells whether a write would change nothing. */
template <typename T>
bool Same(const T& left, const T& right) {
    return left == right;
}

/** NaN stands for a value that isn't there, so one NaN is as good as another. */
inline bool Same(double left, double right) {
    return left == right || (std::isnan(left) && std::isnan(right));
}

/** Runs an operation on behalf of sd-bus, which knows no exceptions.
 *  @return positive, or the negative errno that belongs to the D-Bus error then set */
template <typename Operation>
int Guard(sd_bus_error* error, Operation&& operation) noexcept {
    try {
        std::forward<Operation>(operation)();
        return 1;
    } catch (const InvalidValue& e) {
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, e.what());
    } catch (const std::exception& e) {
        return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, e.what());
    } catch (...) {
        return sd_bus_error_set_const(error, SD_BUS_ERROR_FAILED, "unknown exception");
    }
}

/** Appends the property's value to the answer for a client. */
template <typename Property>
int Get(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* owner,
        sd_bus_error* error) {
    return Guard(error, [&] {
        sdbusplus::message_t message(reply);
        message.append(Property::read(*static_cast<const typename Property::Owner*>(owner)));
    });
}

/** Takes the value that a client wrote to the property's virtual operation. */
template <typename Property>
int Set(sd_bus*, const char*, const char*, const char*, sd_bus_message* value, void* owner,
        sd_bus_error* error) {
    return Guard(error, [&] {
        sdbusplus::message_t message(value);
        typename Property::Wire read{};
        message.read(read);
        Property::write(*static_cast<typename Property::Owner*>(owner), std::move(read));
    });
}

} // namespace bindings
