// SPDX-License-Identifier: Apache-2.0
#include "scenario/parse.hpp"
#include "scenario/vocabulary.hpp"

#include "number_text.hpp"
#include "payload.hpp"

#include <array>
#include <cstdio>

namespace simulator {

namespace {

constexpr std::uint8_t manufacturedField = 6;
constexpr std::uint8_t ianaField = 15;
constexpr std::size_t longestField = 255;

/** A time as the 13 bytes of timestamp104 (DSP0240), resolved to seconds. */
std::vector<std::uint8_t> ParseTimestamp(const Value& value) {
    unsigned year = 0;
    unsigned month = 0;
    unsigned day = 0;
    unsigned hours = 0;
    unsigned minutes = 0;
    unsigned seconds = 0;
    int end = 0;
    const auto text = value.Text();
    const int fields = std::sscanf(text.c_str(), "%4u-%2u-%2u %2u:%2u:%2u%n", &year, &month, &day,
                                   &hours, &minutes, &seconds, &end);
    if (fields != 6 || static_cast<std::size_t>(end) != text.size()) {
        value.Fail("\"" + text + "\" is not a time such as 2021-03-12 07:05:09");
    }
    constexpr std::uint8_t resolvedToSeconds = 0x06;
    return simulator_link::PayloadWriter()
        .WriteUnsigned(0, 5)
        .WriteUnsigned(seconds, 1)
        .WriteUnsigned(minutes, 1)
        .WriteUnsigned(hours, 1)
        .WriteUnsigned(day, 1)
        .WriteUnsigned(month, 1)
        .WriteUnsigned(year, 2)
        .Write(resolvedToSeconds)
        .Finish();
}

FruField ParseFruField(const Value& key, const Value& value, bool general) {
    FruField field;
    field.type = general ? key.Named<std::uint8_t>(FruFieldNames()) : key.Integer<std::uint8_t>();
    if (general && field.type == manufacturedField && value.IsScalar()) {
        field.value = ParseTimestamp(value);
    } else if (general && field.type == ianaField && value.IsScalar()) {
        field.value =
            simulator_link::PayloadWriter().Write(value.Integer<std::uint32_t>()).Finish();
    } else {
        field.value = ParseBytes(value);
    }
    if (field.value.size() > longestField) {
        value.Fail("a field has at most 255 bytes");
    }
    return field;
}

FruRecord ParseFruRecord(const Value& value) {
    static constexpr NamedNumber recordTypes[] = {{"general", 1}, {"oem", 254}};
    Mapping mapping(value);
    FruRecord record;
    mapping.Read("set", record.set);
    mapping.Read("record", record.type, recordTypes);
    mapping.Read("encoding", record.encoding, FruEncodingNames());
    mapping.Read("field-count", record.fieldCount);
    for (const auto& [key, field] : mapping.Get("fields").Entries()) {
        record.fields.push_back(ParseFruField(key, field, record.type == 1));
    }
    mapping.Finish();
    if (record.fields.size() > UINT8_MAX) {
        value.Fail("a record has at most 255 fields");
    }
    return record;
}

std::uint8_t VersionByte(const Value& value, std::string_view text) {
    const auto number = ParseInteger(text);
    if (!number || *number < 0 || *number > 99) {
        value.Fail("\"" + value.Text() + "\" is not a version such as 1.2.0");
    }
    // One digit has 0xF before it, two digits are BCD.
    const auto digits = static_cast<std::uint8_t>(*number);
    return digits < 10 ? 0xF0 | digits : static_cast<std::uint8_t>(digits / 10 << 4 | digits % 10);
}

} // namespace

std::vector<std::uint8_t> ParseBytes(const Value& value) {
    if (value.IsMapping()) {
        Mapping mapping(value);
        auto bytes = mapping.Get("hex").Hex();
        mapping.Finish();
        return bytes;
    }
    const auto text = value.Text();
    return {text.begin(), text.end()};
}

Fru ParseFru(const Value& value) {
    Fru fru;
    if (value.IsSequence()) {
        for (const auto& record : value.Items()) {
            fru.records.push_back(ParseFruRecord(record));
        }
        return fru;
    }
    const auto entries = value.Entries();
    if (entries.size() == 1 && entries.front().first.Text() == "raw-table") {
        fru.rawTable = entries.front().second.Hex();
        return fru;
    }
    FruRecord general;
    for (const auto& [key, field] : entries) {
        general.fields.push_back(ParseFruField(key, field, true));
    }
    fru.records.push_back(std::move(general));
    return fru;
}

Firmware ParseFirmware(const Value& value) {
    Firmware firmware;
    if (value.IsScalar()) {
        firmware.active = ParseBytes(value);
    } else {
        Mapping mapping(value);
        firmware.active = ParseBytes(mapping.Get("active"));
        mapping.Read("type", firmware.activeType, StringTypeNames());
        if (const auto pending = mapping.Find("pending")) {
            firmware.pending = ParseBytes(*pending);
        }
        firmware.pendingType = firmware.activeType;
        mapping.Finish();
    }
    if (firmware.active.size() > longestField || firmware.pending.size() > longestField) {
        value.Fail("a firmware version has at most 255 bytes");
    }
    return firmware;
}

std::uint32_t ParseVersion(const Value& value) {
    const auto text = value.Text();
    if (text.starts_with("0x")) {
        return value.Integer<std::uint32_t>();
    }
    std::array<std::string_view, 3> parts;
    std::string_view rest(text);
    for (auto& part : parts) {
        if (rest.data() != nullptr) {
            const auto dot = rest.find('.');
            part = rest.substr(0, dot);
            rest = dot == std::string_view::npos ? std::string_view() : rest.substr(dot + 1);
        }
    }
    if (rest.data() != nullptr || parts[1].data() == nullptr) {
        value.Fail("\"" + text + "\" is not a version such as 1.2.0");
    }
    std::uint32_t word = 0;
    for (const auto part : parts) {
        // The update may be missing.
        word = word << 8 | (part.data() == nullptr ? 0xFF : VersionByte(value, part));
    }
    return word << 8;
}

} // namespace simulator
