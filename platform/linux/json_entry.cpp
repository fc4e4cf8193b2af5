// SPDX-License-Identifier: Apache-2.0
#include "json_entry.hpp"

#include <algorithm>
#include <charconv>

namespace board {

namespace {

/** The number that a value is or writes in hexadecimal. */
std::optional<std::uint64_t> NumberOf(const nlohmann::json& value) {
    if (value.is_number_unsigned()) {
        return value.get<std::uint64_t>();
    }
    if (!value.is_string()) {
        return std::nullopt;
    }
    const auto& text = value.get_ref<const std::string&>();
    if (!text.starts_with("0x")) {
        return std::nullopt;
    }
    constexpr int hexadecimal = 16;
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 2, end, number, hexadecimal);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::string Listed(JsonEntry::Words words) {
    std::string text;
    for (const auto& [word, number] : words) {
        text += (text.empty() ? "\"" : ", \"") + std::string(word) + '"';
    }
    return text;
}

std::optional<std::uint32_t> NumberOfWord(const nlohmann::json& value, JsonEntry::Words words) {
    if (!value.is_string()) {
        return std::nullopt;
    }
    const auto found = std::ranges::find_if(
        words, [&](const auto& word) { return value.get_ref<const std::string&>() == word.first; });
    return found == words.end() ? std::nullopt : std::optional(found->second);
}

/** A value as the file has it, cut to what a line of the log bears. */
std::string Shown(const nlohmann::json& value) {
    constexpr std::size_t most = 60;
    if (value.is_object() || value.is_array()) {
        return value.is_object() ? "an object" : "a list";
    }
    std::string text = value.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    return text.size() <= most ? text : text.substr(0, most) + "...";
}

} // namespace

JsonEntry::JsonEntry(const nlohmann::json& object, std::string path,
                     std::vector<std::string>& mistakes)
    : object(object), path(std::move(path)), mistakes(mistakes) {
    if (!object.is_object()) {
        Reject(nullptr, "an object, not " + Shown(object));
    }
}

const nlohmann::json* JsonEntry::Find(const char* key, Presence presence) {
    known.insert(key);
    if (!object.is_object()) {
        return nullptr;
    }
    const auto found = object.find(key);
    if (found != object.end()) {
        return &*found;
    }
    if (presence == Presence::REQUIRED) {
        Reject(nullptr, "the key \"" + std::string(key) + '"');
    }
    return nullptr;
}

std::optional<std::uint32_t> JsonEntry::Number(const char* key, std::uint32_t least,
                                               std::uint32_t most, Presence presence) {
    const auto* const value = Find(key, presence);
    if (value == nullptr) {
        return std::nullopt;
    }
    const auto number = NumberOf(*value);
    if (!number || *number < least || *number > most) {
        Reject(key, "a number from " + std::to_string(least) + " to " + std::to_string(most) +
                        ", not " + Shown(*value));
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

std::optional<std::uint32_t> JsonEntry::WordOrNumber(const char* key, Words words,
                                                     std::uint32_t most, Presence presence) {
    const auto* const value = Find(key, presence);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (const auto word = NumberOfWord(*value, words)) {
        return word;
    }
    const auto number = NumberOf(*value);
    if (!number || *number > most) {
        Reject(key, "one of " + Listed(words) + " or a number from 0 to " + std::to_string(most) +
                        ", not " + Shown(*value));
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

std::optional<std::uint32_t> JsonEntry::Word(const char* key, Words words, Presence presence) {
    const auto* const value = Find(key, presence);
    if (value == nullptr) {
        return std::nullopt;
    }
    const auto word = NumberOfWord(*value, words);
    if (!word) {
        Reject(key, "one of " + Listed(words) + ", not " + Shown(*value));
    }
    return word;
}

bool JsonEntry::Flag(const char* key) {
    const auto* const value = Find(key, Presence::OPTIONAL);
    if (value != nullptr && !value->is_boolean()) {
        Reject(key, "true or false, not " + Shown(*value));
    }
    return value != nullptr && value->is_boolean() && value->get<bool>();
}

std::optional<std::string> JsonEntry::Text(const char* key) {
    const auto* const value = Find(key, Presence::OPTIONAL);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->is_string()) {
        Reject(key, "a text, not " + Shown(*value));
        return std::nullopt;
    }
    return value->get<std::string>();
}

std::optional<std::string> JsonEntry::TextIfAny(const char* key) {
    const auto* const value = Find(key, Presence::OPTIONAL);
    return value != nullptr && value->is_string() ? std::optional(value->get<std::string>())
                                                  : std::nullopt;
}

std::span<const nlohmann::json> JsonEntry::List(const char* key) {
    const auto* const value = Find(key, Presence::OPTIONAL);
    if (value == nullptr) {
        return {};
    }
    if (!value->is_array()) {
        Reject(key, "a list, not " + Shown(*value));
        return {};
    }
    return value->get_ref<const nlohmann::json::array_t&>();
}

bool JsonEntry::Has(const char* key) const {
    return object.is_object() && object.contains(key);
}

void JsonEntry::Reject(const char* key, const std::string& expected) {
    std::string where = path;
    if (key != nullptr) {
        where += (where.empty() ? "" : ".") + std::string(key);
    }
    mistakes.push_back((where.empty() ? "the file" : where) + ": expected " + expected);
    good = false;
}

bool JsonEntry::Finish() {
    if (object.is_object()) {
        for (const auto& [key, value] : object.items()) {
            if (!known.contains(key)) {
                Reject(Shown(key).c_str(), "no such key here");
            }
        }
    }
    return good;
}

} // namespace board
