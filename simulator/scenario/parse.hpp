// SPDX-License-Identifier: Apache-2.0
/** The parsers of a scenario's parts. All throw ScenarioError. */
#pragma once

#include "scenario/card.hpp"
#include "scenario/yaml.hpp"

namespace simulator {

/** Looks a key up at an endpoint and then at its card, so that what is said of the card holds for
 *  all of its endpoints. */
class Layers {
public:
    Layers(Mapping& endPoint, Mapping& card) : endPoint(endPoint), card(card) {}

    std::optional<Value> Find(std::string_view key) {
        const auto own = endPoint.Find(key);
        const auto common = card.Find(key);
        return own ? own : common;
    }

private:
    Mapping& endPoint;
    Mapping& card;
};

/** Reads all that an endpoint tells of itself. */
TerminusDescription ParseTerminus(Layers& layers);

/** Reads a tree of entities; each container gets the next free id unless it has one. */
EntityTree ParseEntities(const Value& value);
/** Appends logical associations of entities that have names. */
void ParseLogicalAssociations(const Value& value, EntityTree& tree);
/** Reads a reference: a name of the tree, or type, instance and container. */
EntityId ParseEntityId(const Value& value, const EntityTree& tree);

/** Reads one numeric sensor; "repeat" makes several with rising ids of it. */
std::vector<NumericSensor> ParseNumericSensor(const Value& value, const EntityTree& tree);
StateSensor ParseStateSensor(const Value& value, const EntityTree& tree);
/** Reads "name" or "names" of a sensor or a member. */
std::vector<LocalName> ParseNames(Mapping& sensor);
/** Reads a value that stands still or moves. */
Motion ParseMotion(const Value& value);

NumericEffector ParseNumericEffector(const Value& value, const EntityTree& tree);
StateEffector ParseStateEffector(const Value& value, const EntityTree& tree);

PciIdentity ParsePci(const Value& value);
/** Reads an entry of the accelerator table, described or as bytes, filled up to its size. */
std::vector<std::uint8_t> ParseAccelerator(const Value& value);

/** Reads FRU fields of one record, a list of records, or a raw table. */
Fru ParseFru(const Value& value);
Firmware ParseFirmware(const Value& value);
/** Reads a version such as 1.2.0, or its ver32 word. */
std::uint32_t ParseVersion(const Value& value);

/** Reads a text, or bytes given as {hex: ...}. */
std::vector<std::uint8_t> ParseBytes(const Value& value);

} // namespace simulator
