// SPDX-License-Identifier: Apache-2.0
/** D-Bus types that C++ has no type of its own for. */
#pragma once

#include <compare>
#include <string>
#include <utility>

namespace sdbusplus::message {

/** A D-Bus object path: a string with a type of its own on the wire. */
struct object_path {
    std::string str;

    object_path() = default;
    object_path(std::string path) : str(std::move(path)) {}
    object_path(const char* path) : str(path) {}

    operator const std::string&() const& { return str; }
    operator std::string() && { return std::move(str); }

    auto operator<=>(const object_path&) const = default;
};

} // namespace sdbusplus::message
