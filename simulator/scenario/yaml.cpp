// SPDX-License-Identifier: Apache-2.0
#include "scenario/yaml.hpp"

#include "number_text.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace simulator {

namespace {

std::string At(const std::string& file, int line, const std::string& text) {
    // Marks count lines from 0.
    return file + ":" + std::to_string(line + 1) + ": " + text;
}

} // namespace

Value Value::FromFile(const std::string& path) {
    try {
        return {YAML::LoadFile(path), std::make_shared<const std::string>(path)};
    } catch (const YAML::BadFile&) {
        throw ScenarioError(path + ": can't be read; give the path of a scenario");
    } catch (const YAML::ParserException& error) {
        throw ScenarioError(At(path, error.mark.line, error.msg));
    }
}

void Value::Fail(const std::string& text) const {
    throw ScenarioError(At(*file, node.Mark().line, text));
}

std::string Value::Text() const {
    if (!node.IsScalar()) {
        Fail("a text is expected here");
    }
    return node.Scalar();
}

bool Value::Truth() const {
    const auto text = Text();
    if (text != "true" && text != "false") {
        Fail("\"" + text + "\" is neither true nor false");
    }
    return text == "true";
}

double Value::Real() const {
    const auto text = Text();
    const auto value = ParseReal(text);
    if (!value) {
        Fail("\"" + text + "\" is not a number");
    }
    return *value;
}

std::int64_t Value::IntegerWithin(std::int64_t least, std::int64_t most) const {
    const auto text = Text();
    const auto value = ParseInteger(text);
    if (!value) {
        Fail("\"" + text + "\" is not an integer");
    }
    if (*value < least || *value > most) {
        Fail(text + " is not between " + std::to_string(least) + " and " + std::to_string(most));
    }
    return *value;
}

std::vector<std::uint8_t> Value::Hex() const {
    std::string digits = Text();
    std::erase_if(digits, [](unsigned char c) { return std::isspace(c) != 0; });
    if (digits.size() % 2 != 0) {
        Fail("an odd number of hexadecimal digits");
    }
    std::vector<std::uint8_t> bytes(digits.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* const first = digits.data() + 2 * i;
        if (std::from_chars(first, first + 2, bytes[i], 16).ptr != first + 2) {
            Fail("\"" + std::string(first, 2) + "\" is not a byte in hexadecimal");
        }
    }
    return bytes;
}

std::optional<std::uint32_t> Value::Lookup(std::span<const NamedNumber> names) const {
    const auto text = Text();
    const auto found = std::ranges::find(names, std::string_view(text), &NamedNumber::name);
    if (found != names.end()) {
        return found->number;
    }
    if (!ParseInteger(text)) {
        std::string known;
        for (const auto& name : names) {
            known += (known.empty() ? "" : ", ") + std::string(name.name);
        }
        Fail("\"" + text + "\" is not known here; known are " + known + ", or a number");
    }
    return std::nullopt;
}

std::vector<Value> Value::Items() const {
    if (!node.IsSequence()) {
        Fail("a list is expected here");
    }
    std::vector<Value> items;
    for (const auto& item : node) {
        items.emplace_back(item, file);
    }
    return items;
}

std::vector<std::pair<Value, Value>> Value::Entries() const {
    if (!node.IsMap()) {
        Fail("keys with values are expected here");
    }
    std::set<std::string> seen;
    std::vector<std::pair<Value, Value>> entries;
    for (const auto& entry : node) {
        const Value key(entry.first, file);
        if (!seen.insert(key.Text()).second) {
            key.Fail("\"" + key.Text() + "\" stands twice");
        }
        entries.emplace_back(key, Value(entry.second, file));
    }
    return entries;
}

Mapping::Mapping(const Value& value) : whole(value), entries(value.Entries()) {}

std::optional<Value> Mapping::Find(std::string_view key) {
    asked.emplace(key);
    const auto found =
        std::ranges::find_if(entries, [&](const auto& entry) { return entry.first.Text() == key; });
    return found == entries.end() ? std::nullopt : std::optional(found->second);
}

Value Mapping::Get(std::string_view key) {
    auto value = Find(key);
    if (!value) {
        Fail("\"" + std::string(key) + "\" is missing");
    }
    return *value;
}

void Mapping::Read(std::string_view key, bool& field) {
    if (const auto value = Find(key)) {
        field = value->Truth();
    }
}

void Mapping::Read(std::string_view key, double& field) {
    if (const auto value = Find(key)) {
        field = value->Real();
    }
}

void Mapping::Read(std::string_view key, float& field) {
    if (const auto value = Find(key)) {
        field = static_cast<float>(value->Real());
    }
}

void Mapping::Read(std::string_view key, std::string& field) {
    if (const auto value = Find(key)) {
        field = value->Text();
    }
}

void Mapping::Read(std::string_view key, std::optional<double>& field) {
    if (const auto value = Find(key)) {
        field = value->Real();
    }
}

void Mapping::Finish() const {
    for (const auto& [key, value] : entries) {
        if (!asked.contains(key.Text())) {
            key.Fail("\"" + key.Text() + "\" is not known here");
        }
    }
}

} // namespace simulator
