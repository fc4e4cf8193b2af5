// SPDX-License-Identifier: Apache-2.0
#include "scenario/parse.hpp"
#include "scenario/vocabulary.hpp"

namespace simulator {

namespace {

constexpr NamedNumber typeNames[] = {{"base", 0}, {"platform", 2}, {"fru", 4}, {"firmware", 5}};

std::vector<std::uint32_t> ParseVersions(const Value& value) {
    std::vector<std::uint32_t> versions;
    for (const auto& version : value.Items()) {
        versions.push_back(ParseVersion(version));
    }
    return versions;
}

TypeSupport ParseTypeSupport(const Value& value) {
    if (value.IsSequence()) {
        return {ParseVersions(value), std::nullopt};
    }
    Mapping mapping(value);
    TypeSupport support;
    support.versions = ParseVersions(mapping.Get("versions"));
    if (const auto commands = mapping.Find("commands")) {
        support.commands.emplace();
        for (const auto& command : commands->Items()) {
            support.commands->push_back(command.Integer<std::uint8_t>());
        }
    }
    mapping.Finish();
    return support;
}

std::map<std::uint8_t, TypeSupport> ParseTypes(const std::optional<Value>& value) {
    std::map<std::uint8_t, TypeSupport> types;
    if (!value) {
        types[0].versions = {0xF1F1F000};
        types[2].versions = {0xF1F2F200};
        types[4].versions = {0xF1F0F100};
        types[5].versions = {0xF1F2F000};
        return types;
    }
    for (const auto& [key, support] : value->Entries()) {
        const auto type = key.Named<std::uint8_t>(typeNames);
        if (type > 63) {
            key.Fail("a PLDM type is at most 63");
        }
        types[type] = ParseTypeSupport(support);
    }
    return types;
}

Refusal ParseRefusal(const Value& value) {
    Mapping mapping(value);
    Refusal refusal;
    refusal.type = mapping.Get("type").Named<std::uint8_t>(typeNames);
    refusal.command = mapping.Get("command").Integer<std::uint8_t>();
    refusal.code = mapping.Get("code").Integer<std::uint8_t>();
    mapping.Finish();
    return refusal;
}

/** Reads a part size, or a part size with flags. */
void ParseParts(const std::optional<Value>& value, Multipart& parts) {
    if (!value) {
        return;
    }
    if (value->IsScalar()) {
        parts.partSize = value->Integer<std::uint16_t>(1);
        return;
    }
    Mapping mapping(*value);
    parts.partSize = mapping.Get("size").Integer<std::uint16_t>(1);
    if (const auto flags = mapping.Find("flags")) {
        const auto items = flags->Items();
        if (items.size() != parts.flags.size()) {
            flags->Fail("three flags: for the first, a further and the last part");
        }
        for (std::size_t i = 0; i < items.size(); ++i) {
            parts.flags[i] = items[i].Integer<std::uint8_t>();
        }
    }
    mapping.Finish();
}

void ParseMultipart(const Value& value, TerminusDescription& terminus) {
    Mapping mapping(value);
    ParseParts(mapping.Find("versions"), terminus.versionParts);
    ParseParts(mapping.Find("fru"), terminus.fruParts);
    ParseParts(mapping.Find("pdr"), terminus.pdrParts);
    mapping.Finish();
}

TerminusLocator ParseLocator(const Value& value) {
    static constexpr NamedNumber locatorTypes[] = {
        {"uid", 0}, {"eid", 1}, {"smbus", 2}, {"software", 3}};
    Mapping mapping(value);
    TerminusLocator locator;
    mapping.Read("valid", locator.valid);
    mapping.Read("tid", locator.tid);
    mapping.Read("container", locator.container);
    mapping.Read("type", locator.type, locatorTypes);
    locator.value = mapping.Get("value").Hex();
    mapping.Finish();
    if (locator.value.size() > UINT8_MAX) {
        value.Fail("a locator value has at most 255 bytes");
    }
    return locator;
}

void ParseRepository(const Value& value, RepositoryTraits& traits) {
    static constexpr NamedNumber states[] = {{"available", 0}, {"updating", 1}, {"failed", 2}};
    Mapping mapping(value);
    mapping.Read("state", traits.state, states);
    mapping.Read("change-number", traits.changeNumber);
    mapping.Read("record-count", traits.recordCount);
    mapping.Read("largest-record", traits.largestRecord);
    mapping.Finish();
}

std::vector<std::vector<std::uint8_t>> ParseRawRecords(const std::optional<Value>& value) {
    std::vector<std::vector<std::uint8_t>> records;
    if (value) {
        for (const auto& record : value->Items()) {
            records.push_back(record.Hex());
        }
    }
    return records;
}

/** Calls a function with each item of a list that may be absent. */
template <typename Function>
void ForEachItem(const std::optional<Value>& list, Function function) {
    if (list) {
        for (const auto& item : list->Items()) {
            function(item);
        }
    }
}

void ParseEntityTree(Layers& layers, EntityTree& tree) {
    if (const auto entities = layers.Find("entities")) {
        tree = ParseEntities(*entities);
    }
    if (const auto logical = layers.Find("logical-associations")) {
        ParseLogicalAssociations(*logical, tree);
    }
}

void ParseSensors(Layers& layers, TerminusDescription& terminus) {
    const auto& tree = terminus.entities;
    ForEachItem(layers.Find("sensors"), [&](const Value& item) {
        for (auto& sensor : ParseNumericSensor(item, tree)) {
            terminus.numericSensors.push_back(std::move(sensor));
        }
    });
    ForEachItem(layers.Find("state-sensors"), [&](const Value& item) {
        terminus.stateSensors.push_back(ParseStateSensor(item, tree));
    });
    ForEachItem(layers.Find("numeric-effectors"), [&](const Value& item) {
        terminus.numericEffectors.push_back(ParseNumericEffector(item, tree));
    });
    ForEachItem(layers.Find("state-effectors"), [&](const Value& item) {
        terminus.stateEffectors.push_back(ParseStateEffector(item, tree));
    });
}

} // namespace

TerminusDescription ParseTerminus(Layers& layers) {
    TerminusDescription terminus;
    if (const auto tid = layers.Find("tid")) {
        terminus.tid = tid->Integer<std::uint8_t>();
    }
    terminus.types = ParseTypes(layers.Find("types"));
    ForEachItem(layers.Find("refuse"),
                [&](const Value& item) { terminus.refusals.push_back(ParseRefusal(item)); });
    if (const auto multipart = layers.Find("multipart")) {
        ParseMultipart(*multipart, terminus);
    }
    if (const auto firmware = layers.Find("firmware")) {
        terminus.firmware = ParseFirmware(*firmware);
    }
    if (const auto fru = layers.Find("fru")) {
        terminus.fru = ParseFru(*fru);
    }
    ParseEntityTree(layers, terminus.entities);
    ParseSensors(layers, terminus);
    ForEachItem(layers.Find("terminus-locators"),
                [&](const Value& item) { terminus.locators.push_back(ParseLocator(item)); });
    if (const auto repository = layers.Find("repository")) {
        ParseRepository(*repository, terminus.repository);
    }
    terminus.repository.rawFirst = ParseRawRecords(layers.Find("raw-pdrs-first"));
    terminus.repository.rawLast = ParseRawRecords(layers.Find("raw-pdrs"));
    return terminus;
}

} // namespace simulator
