// SPDX-License-Identifier: Apache-2.0
#include "support/message_text.hpp"

#include "support/check.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace vantric::test {

namespace {

template <typename T>
T ReadBasic(sd_bus_message* message, char type) {
    T value{};
    Check("sd_bus_message_read_basic", sd_bus_message_read_basic(message, type, &value));
    return value;
}

std::string DoubleText(double value) {
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return std::string(text.data(), error == std::errc() ? end : text.data());
}

std::string BasicText(sd_bus_message* message, char type) {
    switch (type) {
    case SD_BUS_TYPE_BYTE:
        return std::to_string(ReadBasic<std::uint8_t>(message, type));
    case SD_BUS_TYPE_BOOLEAN:
        return ReadBasic<int>(message, type) != 0 ? "true" : "false";
    case SD_BUS_TYPE_INT16:
        return std::to_string(ReadBasic<std::int16_t>(message, type));
    case SD_BUS_TYPE_UINT16:
        return std::to_string(ReadBasic<std::uint16_t>(message, type));
    case SD_BUS_TYPE_INT32:
        return std::to_string(ReadBasic<std::int32_t>(message, type));
    case SD_BUS_TYPE_UINT32:
        return std::to_string(ReadBasic<std::uint32_t>(message, type));
    case SD_BUS_TYPE_INT64:
        return std::to_string(ReadBasic<std::int64_t>(message, type));
    case SD_BUS_TYPE_UINT64:
        return std::to_string(ReadBasic<std::uint64_t>(message, type));
    case SD_BUS_TYPE_DOUBLE:
        return DoubleText(ReadBasic<double>(message, type));
    case SD_BUS_TYPE_STRING:
    case SD_BUS_TYPE_OBJECT_PATH:
    case SD_BUS_TYPE_SIGNATURE:
        return '"' + std::string(ReadBasic<const char*>(message, type)) + '"';
    default:
        throw std::runtime_error(std::string("no text for the D-Bus type ") + type);
    }
}

/** The texts of all values up to the end of the container. */
std::vector<std::string> Members(sd_bus_message* message) {
    std::vector<std::string> texts;
    while (Check("sd_bus_message_at_end", sd_bus_message_at_end(message, false)) == 0) {
        texts.push_back(ValueText(message));
    }
    return texts;
}

std::string Joined(const std::vector<std::string>& texts, const char* separator) {
    std::string joined;
    for (const auto& text : texts) {
        joined += (joined.empty() ? "" : separator) + text;
    }
    return joined;
}

std::string ContainerText(char type, const char* contents, std::vector<std::string> members) {
    switch (type) {
    case SD_BUS_TYPE_ARRAY:
        if (contents[0] != SD_BUS_TYPE_DICT_ENTRY_BEGIN) {
            return '[' + Joined(members, ", ") + ']';
        }
        // A dictionary has no order, so neither may its text.
        std::sort(members.begin(), members.end());
        return '{' + Joined(members, ", ") + '}';
    case SD_BUS_TYPE_STRUCT:
        return '(' + Joined(members, ", ") + ')';
    case SD_BUS_TYPE_DICT_ENTRY:
        return Joined(members, ": ");
    default:
        return Joined(members, ", ");
    }
}

} // namespace

std::string ValueText(sd_bus_message* message) {
    char type = 0;
    const char* contents = nullptr;
    Check("sd_bus_message_peek_type", sd_bus_message_peek_type(message, &type, &contents));
    if (contents == nullptr) {
        return BasicText(message, type);
    }
    Check("sd_bus_message_enter_container",
          sd_bus_message_enter_container(message, type, contents));
    auto text = ContainerText(type, contents, Members(message));
    Check("sd_bus_message_exit_container", sd_bus_message_exit_container(message));
    return text;
}

std::string MessageText(sd_bus_message* message) {
    return Joined(Members(message), ", ");
}

} // namespace vantric::test
