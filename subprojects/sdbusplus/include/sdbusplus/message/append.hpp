// SPDX-License-Identifier: Apache-2.0
/** Writes C++ values to a message. */
#pragma once

#include "sdbusplus/details.hpp"
#include "sdbusplus/message/types.hpp"

#include <systemd/sd-bus.h>

namespace sdbusplus::message::details {

/** Writes one value of a basic type.
 *  @param value  as sd_bus_message_append_basic() wants it for the type
 *  @throws exception::SdBusError if the message is sealed or the value isn't valid. */
void AppendBasic(sd_bus_message* message, char type, const void* value);

/** A container that is open for writing; close() ends it. */
class AppendContainer {
public:
    AppendContainer(sd_bus_message* message, char type, const char* contents);
    void close();

private:
    sd_bus_message* message;
};

template <types::Number T>
void Append(sd_bus_message* message, T value) {
    AppendBasic(message, types::SignatureOf<T>::type, &value);
}

inline void Append(sd_bus_message* message, bool value) {
    const int wide = value;
    AppendBasic(message, 'b', &wide);
}

inline void Append(sd_bus_message* message, const char* value) {
    AppendBasic(message, 's', value);
}

inline void Append(sd_bus_message* message, const std::string& value) {
    Append(message, value.c_str());
}

inline void Append(sd_bus_message* message, std::string_view value) {
    Append(message, std::string(value));
}

inline void Append(sd_bus_message* message, const object_path& value) {
    AppendBasic(message, 'o', value.str.c_str());
}

template <typename T>
void Append(sd_bus_message* message, const std::vector<T>& values);
template <typename Key, typename Value>
void Append(sd_bus_message* message, const std::pair<Key, Value>& value);
template <typename Key, typename Value>
void Append(sd_bus_message* message, const std::map<Key, Value>& values);
template <typename Key, typename Value>
void Append(sd_bus_message* message, const std::unordered_map<Key, Value>& values);
template <typename... T>
void Append(sd_bus_message* message, const std::tuple<T...>& value);
template <typename... T>
void Append(sd_bus_message* message, const std::variant<T...>& value);

template <typename Element, typename Range>
void AppendArray(sd_bus_message* message, const Range& values) {
    AppendContainer array(message, 'a', types::signature_v<Element>.c_str());
    for (const auto& value : values) {
        // Names the type, because an element of vector<bool> is a proxy.
        Append(message, static_cast<const Element&>(value));
    }
    array.close();
}

template <typename T>
void Append(sd_bus_message* message, const std::vector<T>& values) {
    AppendArray<T>(message, values);
}

template <typename Key, typename Value>
void Append(sd_bus_message* message, const std::pair<Key, Value>& value) {
    AppendContainer entry(message, 'e', types::joined_v<std::remove_const_t<Key>, Value>.c_str());
    Append(message, value.first);
    Append(message, value.second);
    entry.close();
}

template <typename Key, typename Value>
void Append(sd_bus_message* message, const std::map<Key, Value>& values) {
    AppendArray<std::pair<const Key, Value>>(message, values);
}

template <typename Key, typename Value>
void Append(sd_bus_message* message, const std::unordered_map<Key, Value>& values) {
    AppendArray<std::pair<const Key, Value>>(message, values);
}

template <typename... T>
void Append(sd_bus_message* message, const std::tuple<T...>& value) {
    AppendContainer structure(message, 'r', types::joined_v<T...>.c_str());
    std::apply([&](const auto&... member) { (Append(message, member), ...); }, value);
    structure.close();
}

template <typename... T>
void Append(sd_bus_message* message, const std::variant<T...>& value) {
    std::visit(
        [&]<typename Held>(const Held& held) {
            AppendContainer variant(message, 'v', types::signature_v<Held>.c_str());
            Append(message, held);
            variant.close();
        },
        value);
}

} // namespace sdbusplus::message::details
