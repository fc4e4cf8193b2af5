// SPDX-License-Identifier: Apache-2.0
#include "table.hpp"

#include "text.hpp"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace monitor {

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t cardColumn = 10;
constexpr std::size_t sensorColumn = cardColumn + 2;
constexpr std::size_t valueWidth = 12; // with the gap before it
constexpr std::size_t narrowestName = 12;
constexpr std::size_t usualNote = 11; // "alarm high"
constexpr std::string_view warningTitle = "WARNING";
constexpr std::string_view criticalTitle = "CRITICAL";

std::string Joined(std::initializer_list<std::string> parts, const char* separator = ", ") {
    std::string text;
    for (const std::string& part : parts) {
        if (!part.empty()) {
            text.append(text.empty() ? "" : separator).append(part);
        }
    }
    return text;
}

std::string Labelled(const std::string& label, const std::string& text) {
    return text.empty() ? "" : label + " " + text;
}

/** The text without its middle if it is too long: names of a kind differ at their ends. */
std::string Shortened(std::string_view text, std::size_t width) {
    std::string printable = Printable(text);
    if (printable.size() <= width) {
        return printable;
    }
    const std::size_t front = width / 2;
    return printable.substr(0, front) + '~' +
           printable.substr(printable.size() - (width - 1 - front));
}

std::string ValueText(const Sensor& sensor) {
    return sensor.value ? Joined({Decimal(*sensor.value), sensor.unit}, " ") : Word(sensor.reading);
}

std::string LimitText(const Limits& limits) {
    const std::string high = limits.high ? Decimal(*limits.high) : "";
    return limits.low ? Decimal(*limits.low) + ".." + high : high;
}

std::string StateText(const State& state) {
    return state.read ? state.state.empty() ? "unknown" : state.state : Word(Reading::NOT_READ);
}

/** Why a sensor isn't well, or what is known of it without a reading. */
std::string Note(const Sensor& sensor) {
    switch (sensor.reading) {
    case Reading::NOT_READ:
        return "not read yet, or 0";
    case Reading::NONE:
        return "not read yet, failed or 0";
    case Reading::OK:
    case Reading::UNAVAILABLE:
    case Reading::FAILED:
        break;
    }
    for (const Limits& limits : {sensor.critical, sensor.warning}) {
        if (limits.alarmHigh || limits.alarmLow) {
            return limits.alarmHigh ? "alarm high" : "alarm low";
        }
    }
    if (sensor.value && sensor.severity != Severity::OK) {
        const Limits& crossed =
            sensor.severity == Severity::CRITICAL ? sensor.critical : sensor.warning;
        return crossed.low && *sensor.value <= *crossed.low ? "below limit" : "above limit";
    }
    return sensor.reading == Reading::UNAVAILABLE ? Word(sensor.reading) : "";
}

/** Starts a line with the word of its severity; a sensor that is well has none. */
Line Start(Severity severity, std::size_t column) {
    Line line;
    if (column == cardColumn || severity != Severity::OK) {
        line.Add(Word(severity), StyleOf(severity));
    }
    line.TabTo(column);
    return line;
}

/** What a line is found by besides its names: the word of something that isn't well. */
std::string Alert(Severity severity) {
    return severity == Severity::OK ? "" : Word(severity);
}

} // namespace

Style StyleOf(Severity severity) {
    switch (severity) {
    case Severity::OK:
        return Style::GREEN;
    case Severity::UNKNOWN:
        return Style::DIM;
    case Severity::WARNING:
        return Style::YELLOW;
    case Severity::CRITICAL:
    case Severity::FATAL:
        break;
    }
    return Style::RED;
}

Table::Table(const std::vector<Card>& cards, std::size_t width) {
    std::size_t name = narrowestName;
    std::size_t warning = warningTitle.size();
    std::size_t critical = criticalTitle.size();
    for (const Card& card : cards) {
        for (const Sensor& sensor : card.sensors) {
            name = std::max(name, Printable(sensor.name).size());
            warning = std::max(warning, LimitText(sensor.warning).size());
            critical = std::max(critical, LimitText(sensor.critical).size());
        }
        for (const State& state : card.states) {
            name = std::max(name, Printable(state.name).size());
        }
    }
    const std::size_t others =
        sensorColumn + valueWidth + gap + warning + gap + critical + gap + usualNote;
    nameWidth = width == 0 || name + others <= width
                    ? name
                    : std::max(narrowestName, width - std::min(width, others));
    valueEnd = sensorColumn + nameWidth + valueWidth;
    warningEnd = valueEnd + gap + warning;
    criticalEnd = warningEnd + gap + critical;
}

Line Table::Head() const {
    Line line;
    line.TabTo(cardColumn).Add("CARD / SENSOR", Style::DIM);
    line.AddUpTo(valueEnd, "VALUE", Style::DIM);
    line.AddUpTo(warningEnd, warningTitle, Style::DIM);
    line.AddUpTo(criticalEnd, criticalTitle, Style::DIM);
    return line;
}

std::vector<Row> Table::Rows(const Card& card) const {
    std::vector<Row> rows{CardRow(card)};
    for (const Sensor& sensor : card.sensors) {
        rows.push_back(SensorRow(sensor));
    }
    for (const State& state : card.states) {
        rows.push_back(StateRow(state));
    }
    return rows;
}

Row Table::CardRow(const Card& card) const {
    const Severity worst = card.Worst();
    Line line = Start(worst, cardColumn);
    line.Add(card.name, Style::BOLD).TabTo(0);
    line.Add(Joined({card.model, Labelled("serial", card.serialNumber),
                     Labelled("firmware", card.firmware), Labelled("health", Word(card.health))}));
    return {line, Joined({card.name, card.ldid, card.model, card.serialNumber, Alert(worst)})};
}

Row Table::SensorRow(const Sensor& sensor) const {
    const Style well = sensor.value ? Style::PLAIN : Style::DIM;
    Line line = Start(sensor.severity, sensorColumn);
    line.Add(Shortened(sensor.name, nameWidth));
    line.AddUpTo(valueEnd, ValueText(sensor),
                 sensor.severity == Severity::OK ? well : StyleOf(sensor.severity));
    line.AddUpTo(warningEnd, LimitText(sensor.warning));
    line.AddUpTo(criticalEnd, LimitText(sensor.critical));
    line.TabTo(criticalEnd + gap).Add(Joined({Note(sensor), sensor.part}), Style::DIM);
    return {line, Joined({sensor.name, sensor.part, Alert(sensor.severity)})};
}

Row Table::StateRow(const State& state) const {
    Line line = Start(state.severity, sensorColumn);
    line.Add(Shortened(state.name, nameWidth));
    line.AddUpTo(valueEnd, StateText(state),
                 state.severity == Severity::OK ? Style::PLAIN : StyleOf(state.severity));
    line.TabTo(criticalEnd + gap).Add(Joined({state.set, state.part}), Style::DIM);
    return {line, Joined({state.name, state.part, Alert(state.severity)})};
}

} // namespace monitor
