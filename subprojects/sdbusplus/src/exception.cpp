// SPDX-License-Identifier: Apache-2.0
#include "sdbusplus/exception.hpp"

#include <cstdlib>

namespace sdbusplus::exception {

namespace {

std::string TextOrEmpty(const char* text) {
    return text == nullptr ? std::string() : text;
}

/** An sd_bus_error made from an errno value, for the time of an expression. */
struct ErrnoError {
    explicit ErrnoError(int number) { sd_bus_error_set_errno(&error, number); }
    ~ErrnoError() { sd_bus_error_free(&error); }
    ErrnoError(const ErrnoError&) = delete;
    ErrnoError& operator=(const ErrnoError&) = delete;

    const sd_bus_error* get() const { return &error; }

private:
    sd_bus_error error{};
};

} // namespace

SdBusError::SdBusError(int error, const char* prefix)
    : SdBusError(ErrnoError(std::abs(error)).get(), prefix) {
    // The way over the error's name forgets numbers that have no name of their own.
    errorNumber = std::abs(error);
}

SdBusError::SdBusError(const sd_bus_error* error, const char* prefix)
    : errorName(TextOrEmpty(error->name)), errorDescription(TextOrEmpty(error->message)),
      errorNumber(sd_bus_error_get_errno(error)),
      text(TextOrEmpty(prefix) + ": " + errorName + ": " + errorDescription) {}

} // namespace sdbusplus::exception
