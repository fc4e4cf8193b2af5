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

template <typename Number>
std::string NumberText(sd_bus_message* message, char type) {
    std::array<char, 32> text{};
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), ReadBasic<Number>(message, type));
    return std::string(text.data(), error == std::errc() ? end : text.data());
}

std::string BasicText(sd_bus_message* message, char type) {
    switch (type) {
    case SD_BUS_TYPE_BYTE:
        return NumberText<std::uint8_t>(message, type);
    case SD_BUS_TYPE_BOOLEAN:
        return ReadBasic<int>(message, type) != 0 ? "true" : "false";
    case SD_BUS_TYPE_UINT16:
        return NumberText<std::uint16_t>(message, type);
    case SD_BUS_TYPE_INT32:
        return NumberText<std::int32_t>(message, type);
    case SD_BUS_TYPE_UINT32:
        return NumberText<std::uint32_t>(message, type);
    case SD_BUS_TYPE_DOUBLE:
        return NumberText<double>(message, type);
    case SD_BUS_TYPE_STRING:
    case SD_BUS_TYPE_OBJECT_PATH:
        return '"' + std::string(ReadBasic<const char*>(message, type)) + '"';
    default:
        throw std::runtime_error(std::string("no text for type ") + type);
    }
}

/** The texts of all values up to the end of the container, in their order or sorted. */
std::string Members(sd_bus_message* message, const char* separator = ", ", bool sorted = false) {
    std::vector<std::string> texts;
    while (Check("sd_bus_message_at_end", sd_bus_message_at_end(message, false)) == 0) {
        texts.push_back(ValueText(message));
    }
    if (sorted) {
        std::ranges::sort(texts);
    }
    std::string joined;
    for (const auto& text : texts) {
        joined += (joined.empty() ? "" : separator) + text;
    }
    return joined;
}

std::string ContainerText(sd_bus_message* message, char type, bool dictionary) {
    switch (type) {
    case SD_BUS_TYPE_ARRAY: // a dictionary has no order, so neither may its text
        return dictionary ? '{' + Members(message, ", ", true) + '}' : '[' + Members(message) + ']';
    case SD_BUS_TYPE_STRUCT:
        return '(' + Members(message) + ')';
    case SD_BUS_TYPE_DICT_ENTRY:
        return Members(message, ": ");
    default:
        return Members(message);
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
    auto text = ContainerText(message, type, contents[0] == SD_BUS_TYPE_DICT_ENTRY_BEGIN);
    Check("sd_bus_message_exit_container", sd_bus_message_exit_container(message));
    return text;
}

std::string MessageText(sd_bus_message* message) {
    return Members(message);
}

} // namespace vantric::test
