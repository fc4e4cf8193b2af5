// SPDX-License-Identifier: Apache-2.0
#include "support/message_text.hpp"

#include "support/check.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>
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

std::string BooleanText(sd_bus_message* message, char type) {
    return ReadBasic<int>(message, type) != 0 ? "true" : "false";
}

std::string QuotedText(sd_bus_message* message, char type) {
    return '"' + std::string(ReadBasic<const char*>(message, type)) + '"';
}

std::string BasicText(sd_bus_message* message, char type) {
    static const std::map<char, std::string (*)(sd_bus_message*, char)> texts{
        {SD_BUS_TYPE_BYTE, NumberText<std::uint8_t>},
        {SD_BUS_TYPE_BOOLEAN, BooleanText},
        {SD_BUS_TYPE_UINT16, NumberText<std::uint16_t>},
        {SD_BUS_TYPE_INT32, NumberText<std::int32_t>},
        {SD_BUS_TYPE_UINT32, NumberText<std::uint32_t>},
        {SD_BUS_TYPE_DOUBLE, NumberText<double>},
        {SD_BUS_TYPE_STRING, QuotedText},
        {SD_BUS_TYPE_OBJECT_PATH, QuotedText}};
    return texts.at(type)(message, type);
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
