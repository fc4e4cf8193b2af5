// SPDX-License-Identifier: Apache-2.0
#include "scenario/parse.hpp"
#include "scenario/vocabulary.hpp"

namespace simulator {

namespace {

SensorForm ParseForm(const Value& value) {
    static constexpr std::pair<std::string_view, SensorForm> forms[] = {
        {"full", SensorForm::Full},
        {"compact", SensorForm::Compact},
        {"short-id", SensorForm::ShortId},
    };
    for (const auto& [name, form] : forms) {
        if (value.Text() == name) {
            return form;
        }
    }
    value.Fail("a form is full, compact or short-id");
}

void RequirePositive(Mapping& mapping, std::string_view key, double& field) {
    mapping.Read(key, field);
    if (field <= 0.0) {
        mapping.Fail("\"" + std::string(key) + "\" must be above 0");
    }
}

Ramp ParseRamp(const Value& value) {
    Mapping mapping(value);
    Ramp ramp;
    ramp.from = mapping.Get("from").Real();
    ramp.to = mapping.Get("to").Real();
    RequirePositive(mapping, "seconds", ramp.seconds);
    mapping.Finish();
    return ramp;
}

Sine ParseSine(const Value& value) {
    Mapping mapping(value);
    Sine sine;
    sine.mean = mapping.Get("mean").Real();
    sine.amplitude = mapping.Get("amplitude").Real();
    RequirePositive(mapping, "period", sine.period);
    mapping.Finish();
    return sine;
}

RandomWalk ParseRandomWalk(const Value& value) {
    Mapping mapping(value);
    RandomWalk walk;
    walk.start = mapping.Get("start").Real();
    walk.least = mapping.Get("least").Real();
    walk.most = mapping.Get("most").Real();
    RequirePositive(mapping, "step", walk.step);
    RequirePositive(mapping, "every", walk.every);
    mapping.Finish();
    if (walk.start < walk.least || walk.start > walk.most) {
        value.Fail("the start must lie between least and most");
    }
    return walk;
}

Thresholds ParseThresholds(const Value& value) {
    Mapping mapping(value);
    Thresholds thresholds;
    mapping.Read("warning-high", thresholds.warningHigh);
    mapping.Read("critical-high", thresholds.criticalHigh);
    mapping.Read("fatal-high", thresholds.fatalHigh);
    mapping.Read("warning-low", thresholds.warningLow);
    mapping.Read("critical-low", thresholds.criticalLow);
    mapping.Read("fatal-low", thresholds.fatalLow);
    mapping.Finish();
    return thresholds;
}

LocalName ParseName(const std::string& language, const Value& value) {
    const auto bytes = ParseBytes(value);
    return {language, {bytes.begin(), bytes.end()}, value.IsMapping()};
}

StateMember ParseStateMember(const Value& value) {
    Mapping mapping(value);
    StateMember member;
    member.stateSet = mapping.Get("set").Named<std::uint16_t>(StateSetNames());
    member.possibleStates = {1, 2, 3, 4};
    if (const auto states = mapping.Find("states")) {
        member.possibleStates.clear();
        for (const auto& state : states->Items()) {
            member.possibleStates.push_back(state.Integer<std::uint8_t>());
        }
    }
    mapping.Read("state", member.state);
    mapping.Read("operational", member.operationalState, OperationalStateNames());
    member.names = ParseNames(mapping);
    mapping.Finish();
    return member;
}

/** A record holds the same number of names for each member. */
void RequireEqualNameCounts(const Value& value, const StateSensor& sensor) {
    for (const auto& member : sensor.members) {
        if (member.names.size() != sensor.members.front().names.size()) {
            value.Fail("all members of a state sensor must have the same number of names");
        }
    }
}

} // namespace

std::vector<LocalName> ParseNames(Mapping& sensor) {
    const auto name = sensor.Find("name");
    const auto names = sensor.Find("names");
    std::vector<LocalName> parsed;
    if (name) {
        parsed.push_back(ParseName("en", *name));
    }
    if (names) {
        for (const auto& [language, text] : names->Entries()) {
            parsed.push_back(ParseName(language.Text(), text));
        }
    }
    return parsed;
}

Motion ParseMotion(const Value& value) {
    if (!value.IsMapping()) {
        return value.Real();
    }
    const auto entries = value.Entries();
    if (entries.size() == 1) {
        const auto kind = entries.front().first.Text();
        const auto& parameters = entries.front().second;
        if (kind == "ramp") {
            return ParseRamp(parameters);
        }
        if (kind == "sine") {
            return ParseSine(parameters);
        }
        if (kind == "random-walk") {
            return ParseRandomWalk(parameters);
        }
    }
    value.Fail("a value is a number, or one of ramp, sine and random-walk");
}

std::vector<NumericSensor> ParseNumericSensor(const Value& value, const EntityTree& tree) {
    Mapping mapping(value);
    NumericSensor sensor;
    sensor.id = mapping.Get("id").Integer<std::uint16_t>();
    if (const auto form = mapping.Find("form")) {
        sensor.form = ParseForm(*form);
    }
    if (const auto entity = mapping.Find("entity")) {
        sensor.entity = ParseEntityId(*entity, tree);
    }
    mapping.Read("unit", sensor.unit, UnitNames());
    mapping.Read("modifier", sensor.modifier);
    mapping.Read("rate", sensor.rateUnit, RateUnitNames());
    mapping.Read("size", sensor.dataSize, DataSizeNames());
    sensor.rangeFormat = sensor.dataSize <= 5 ? sensor.dataSize : sensor.dataSize + 1;
    mapping.Read("range-format", sensor.rangeFormat, RangeFormatNames());
    mapping.Read("resolution", sensor.resolution);
    mapping.Read("offset", sensor.offset);
    mapping.Read("hysteresis", sensor.hysteresis);
    mapping.Read("init", sensor.init, SensorInitNames());
    if (const auto thresholds = mapping.Find("thresholds")) {
        sensor.thresholds = ParseThresholds(*thresholds);
    }
    mapping.Read("supported-thresholds", sensor.supportedThresholds);
    sensor.names = ParseNames(mapping);
    sensor.value = ParseMotion(mapping.Get("value"));
    mapping.Read("operational", sensor.operationalState, OperationalStateNames());
    if (const auto state = mapping.Find("present")) {
        sensor.presentState = state->Named<std::uint8_t>(PresentStateNames());
    }
    mapping.Read("reading-size", sensor.readingSize);
    std::uint16_t repeat = 1;
    mapping.Read("repeat", repeat);
    mapping.Finish();
    if (sensor.form == SensorForm::Compact &&
        (sensor.resolution != 1.0F || sensor.offset != 0.0F)) {
        value.Fail("a compact sensor has neither a resolution nor an offset");
    }
    std::vector<NumericSensor> sensors(repeat, sensor);
    for (std::size_t i = 0; i < sensors.size(); ++i) {
        sensors[i].id = static_cast<std::uint16_t>(sensor.id + i);
    }
    return sensors;
}

StateSensor ParseStateSensor(const Value& value, const EntityTree& tree) {
    Mapping mapping(value);
    StateSensor sensor;
    sensor.id = mapping.Get("id").Integer<std::uint16_t>();
    if (const auto entity = mapping.Find("entity")) {
        sensor.entity = ParseEntityId(*entity, tree);
    }
    mapping.Read("init", sensor.init, SensorInitNames());
    for (const auto& member : mapping.Get("members").Items()) {
        sensor.members.push_back(ParseStateMember(member));
    }
    mapping.Finish();
    if (sensor.members.size() > UINT8_MAX) {
        value.Fail("a state sensor has at most 255 members");
    }
    RequireEqualNameCounts(value, sensor);
    return sensor;
}

} // namespace simulator
