// SPDX-License-Identifier: Apache-2.0
/** Reads C++ values from a message. */
#pragma once

#include "sdbusplus/details.hpp"
#include "sdbusplus/message/types.hpp"

#include <systemd/sd-bus.h>

namespace sdbusplus::message::details {

/** Reads one value of a basic type that isn't text.
 *  @param value  as sd_bus_message_read_basic() fills it for the type
 *  @throws exception::SdBusError if the next value has another type, or if there is none. */
void ReadBasic(sd_bus_message* message, char type, void* value);

/** Reads a string or a path; valid as long as the message.
 *  @throws exception::SdBusError "sd_bus_message_read_basic string" in the same cases. */
const char* ReadText(sd_bus_message* message, char type);

/** A container that is being read; close() goes on after it. */
class ReadContainer {
public:
    ReadContainer(sd_bus_message* message, char type, const char* contents);
    bool at_end() const;
    void close();

private:
    sd_bus_message* message;
};

/** Tells whether the next value is a variant of the type. */
bool IsVariantOf(sd_bus_message* message, const char* signature);

/** Skips the next value, which has the type. */
void Skip(sd_bus_message* message, const char* signature);

template <types::Number T>
void Read(sd_bus_message* message, T& value) {
    ReadBasic(message, types::SignatureOf<T>::type, &value);
}

inline void Read(sd_bus_message* message, bool& value) {
    int wide = 0;
    ReadBasic(message, 'b', &wide);
    value = wide != 0;
}

inline void Read(sd_bus_message* message, std::string& value) {
    value = ReadText(message, 's');
}

inline void Read(sd_bus_message* message, object_path& value) {
    value.str = ReadText(message, 'o');
}

template <typename T>
void Read(sd_bus_message* message, std::vector<T>& values);
template <typename Key, typename Value>
void Read(sd_bus_message* message, std::pair<Key, Value>& value);
template <typename Key, typename Value>
void Read(sd_bus_message* message, std::map<Key, Value>& values);
template <typename Key, typename Value>
void Read(sd_bus_message* message, std::unordered_map<Key, Value>& values);
template <typename... T>
void Read(sd_bus_message* message, std::tuple<T...>& value);
template <typename... T>
void Read(sd_bus_message* message, std::variant<T...>& value);

template <typename T>
void Read(sd_bus_message* message, std::vector<T>& values) {
    ReadContainer array(message, 'a', types::signature_v<T>.c_str());
    values.clear();
    while (!array.at_end()) {
        T value{};
        Read(message, value);
        values.push_back(std::move(value));
    }
    array.close();
}

template <typename Key, typename Value>
void Read(sd_bus_message* message, std::pair<Key, Value>& value) {
    ReadContainer entry(message, 'e', types::joined_v<Key, Value>.c_str());
    Read(message, value.first);
    Read(message, value.second);
    entry.close();
}

template <typename Map>
void ReadMap(sd_bus_message* message, Map& values) {
    using Entry = std::pair<typename Map::key_type, typename Map::mapped_type>;
    ReadContainer array(message, 'a', types::signature_v<Entry>.c_str());
    values.clear();
    while (!array.at_end()) {
        Entry entry{};
        Read(message, entry);
        values.insert(std::move(entry));
    }
    array.close();
}

template <typename Key, typename Value>
void Read(sd_bus_message* message, std::map<Key, Value>& values) {
    ReadMap(message, values);
}

template <typename Key, typename Value>
void Read(sd_bus_message* message, std::unordered_map<Key, Value>& values) {
    ReadMap(message, values);
}

template <typename... T>
void Read(sd_bus_message* message, std::tuple<T...>& value) {
    ReadContainer structure(message, 'r', types::joined_v<T...>.c_str());
    std::apply([&](auto&... member) { (Read(message, member), ...); }, value);
    structure.close();
}

/** Reads the variant into value if it is of the type T. */
template <typename T, typename Variant>
bool ReadIfVariantOf(sd_bus_message* message, Variant& value) {
    if (!IsVariantOf(message, types::signature_v<T>.c_str())) {
        return false;
    }
    ReadContainer variant(message, 'v', types::signature_v<T>.c_str());
    T held{};
    Read(message, held);
    variant.close();
    value = std::move(held);
    return true;
}

/** A variant whose type is none of the alternatives is skipped; value stays as it was. */
template <typename... T>
void Read(sd_bus_message* message, std::variant<T...>& value) {
    if (!(ReadIfVariantOf<T>(message, value) || ...)) {
        Skip(message, "v");
    }
}

} // namespace sdbusplus::message::details
