// SPDX-License-Identifier: Apache-2.0
/** The exception that every failed call of sd-bus turns into. */
#pragma once

#include <systemd/sd-bus.h>

#include <exception>
#include <string>

namespace sdbusplus::exception {

/** A failed call: which one, and the D-Bus error that it ended with. */
class SdBusError : public std::exception {
public:
    /** @param error   the errno value, positive
     *  @param prefix  what failed, as a rule the name of the C function */
    SdBusError(int error, const char* prefix);

    /** @param error   the error that sd-bus filled in; copied, and left with the caller
     *  @param prefix  as above */
    SdBusError(const sd_bus_error* error, const char* prefix);

    /** Returns the name of the D-Bus error, such as "org.freedesktop.DBus.Error.Timeout". */
    const char* name() const noexcept { return errorName.c_str(); }

    /** Returns what sd-bus or the other side says about the error; may be empty. */
    const char* description() const noexcept { return errorDescription.c_str(); }

    /** Returns the errno value that belongs to the error. */
    int get_errno() const noexcept { return errorNumber; }

    /** Returns prefix, name and description, with ": " between them. */
    const char* what() const noexcept override { return text.c_str(); }

private:
    std::string errorName;
    std::string errorDescription;
    int errorNumber;
    std::string text;
};

} // namespace sdbusplus::exception
