// SPDX-License-Identifier: Apache-2.0
#include "scenario/parse.hpp"
#include "scenario/vocabulary.hpp"

namespace simulator {

NumericEffector ParseNumericEffector(const Value& value, const EntityTree& tree) {
    Mapping mapping(value);
    NumericEffector effector;
    effector.id = mapping.Get("id").Integer<std::uint16_t>();
    if (const auto entity = mapping.Find("entity")) {
        effector.entity = ParseEntityId(*entity, tree);
    }
    mapping.Read("semantic", effector.semantic);
    mapping.Read("unit", effector.unit, UnitNames());
    mapping.Read("modifier", effector.modifier);
    if (const auto size = mapping.Find("size")) {
        effector.dataSize = size->Named<std::uint8_t>(DataSizeNames());
        if (effector.dataSize > 5) {
            size->Fail("an effector has at most 32 bits");
        }
    }
    effector.rangeFormat = effector.dataSize;
    mapping.Read("resolution", effector.resolution);
    mapping.Read("offset", effector.offset);
    mapping.Read("least", effector.least);
    mapping.Read("most", effector.most);
    mapping.Read("initial", effector.initial);
    mapping.Finish();
    return effector;
}

StateEffector ParseStateEffector(const Value& value, const EntityTree& tree) {
    Mapping mapping(value);
    StateEffector effector;
    effector.id = mapping.Get("id").Integer<std::uint16_t>();
    if (const auto entity = mapping.Find("entity")) {
        effector.entity = ParseEntityId(*entity, tree);
    }
    mapping.Read("semantic", effector.semantic);
    mapping.Read("initial", effector.initial);
    for (const auto& item : mapping.Get("members").Items()) {
        Mapping member(item);
        StateEffector::Member parsed;
        parsed.stateSet = member.Get("set").Named<std::uint16_t>(StateSetNames());
        for (const auto& state : member.Get("states").Items()) {
            parsed.possibleStates.push_back(state.Integer<std::uint8_t>());
        }
        member.Finish();
        effector.members.push_back(std::move(parsed));
    }
    mapping.Finish();
    if (effector.members.size() > UINT8_MAX) {
        value.Fail("a state effector has at most 255 members");
    }
    return effector;
}

} // namespace simulator
