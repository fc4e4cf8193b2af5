// SPDX-License-Identifier: Apache-2.0
#include "json.hpp"

#include <nlohmann/json.hpp>

namespace monitor {

namespace {

using Json = nlohmann::ordered_json;

Json OrNull(const std::optional<double>& number) {
    return number ? Json(*number) : Json(nullptr);
}

Json ToJson(const Limits& limits) {
    return {{"low", OrNull(limits.low)},
            {"high", OrNull(limits.high)},
            {"alarmLow", limits.alarmLow},
            {"alarmHigh", limits.alarmHigh}};
}

Json ToJson(const Sensor& sensor) {
    return {{"path", sensor.path},
            {"name", sensor.name},
            {"part", sensor.part},
            {"value", OrNull(sensor.value)},
            {"unit", sensor.unit},
            {"reading", Word(sensor.reading)},
            {"warning", ToJson(sensor.warning)},
            {"critical", ToJson(sensor.critical)},
            {"severity", Word(sensor.severity)}};
}

Json ToJson(const State& state) {
    return {{"path", state.path},
            {"name", state.name},
            {"part", state.part},
            {"set", state.set},
            {"state", state.read ? Json(state.state) : Json(nullptr)},
            {"severity", Word(state.severity)}};
}

Json ToJson(const Card& card);

template <typename Row>
Json ToJsonArray(const std::vector<Row>& rows) {
    Json array = Json::array();
    for (const Row& row : rows) {
        array.push_back(ToJson(row));
    }
    return array;
}

Json ToJson(const Card& card) {
    return {{"path", card.path},
            {"name", card.name},
            {"ldid", card.ldid},
            {"model", card.model},
            {"partNumber", card.partNumber},
            {"serialNumber", card.serialNumber},
            {"firmware", card.firmware},
            {"health", Word(card.health)},
            {"severity", Word(card.Worst())},
            {"sensors", ToJsonArray(card.sensors)},
            {"states", ToJsonArray(card.states)}};
}

} // namespace

std::string ToJson(const std::vector<Card>& cards) {
    const Json document{{"cards", ToJsonArray(cards)}};
    constexpr bool onlyAscii = true; // a terminal that shows it may obey control characters
    return document.dump(2, ' ', onlyAscii, Json::error_handler_t::replace) + '\n';
}

} // namespace monitor
