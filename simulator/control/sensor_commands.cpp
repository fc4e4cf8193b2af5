// SPDX-License-Identifier: Apache-2.0
#include "control/control.hpp"
#include "scenario/vocabulary.hpp"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace simulator {

namespace {

std::string Number(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string Place(const LiveEndPoint& endPoint, std::uint16_t sensor) {
    return "sensor " + std::to_string(sensor) + " of EID " +
           std::to_string(endPoint.description.eid);
}

[[noreturn]] void NoSensor(const LiveEndPoint& endPoint, std::string_view kind,
                           std::uint16_t sensor) {
    throw CommandError("EID " + std::to_string(endPoint.description.eid) + " has no " +
                       std::string(kind) + " sensor " + std::to_string(sensor));
}

LiveNumericSensor& FindNumeric(LiveEndPoint& endPoint, std::uint16_t sensor) {
    const auto found = endPoint.terminus.numericSensors.find(sensor);
    if (found == endPoint.terminus.numericSensors.end()) {
        NoSensor(endPoint, "numeric", sensor);
    }
    return found->second;
}

LiveStateSensor& FindState(LiveEndPoint& endPoint, std::uint16_t sensor) {
    const auto found = endPoint.terminus.stateSensors.find(sensor);
    if (found == endPoint.terminus.stateSensors.end()) {
        NoSensor(endPoint, "state", sensor);
    }
    return found->second;
}

std::string Set(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    const double value = words.Real("a value");
    words.Finish();
    FindNumeric(endPoint, sensor).Value().Fix(value);
    return Place(endPoint, sensor) + " stands at " + Number(value);
}

std::string Release(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    words.Finish();
    FindNumeric(endPoint, sensor).Value().Release();
    return Place(endPoint, sensor) + " moves as described";
}

std::string SetState(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    const auto member = words.Integer<std::uint8_t>("a member, counted from 1,");
    const auto state = words.Integer<std::uint8_t>("a state");
    words.Finish();
    auto& found = FindState(endPoint, sensor);
    if (member == 0 || member > found.MemberCount()) {
        throw CommandError(Place(endPoint, sensor) + " has members 1 to " +
                           std::to_string(found.MemberCount()));
    }
    found.SetState(member - 1U, state);
    return "member " + std::to_string(member) + " of " + Place(endPoint, sensor) + " is in state " +
           std::to_string(state);
}

std::string Operational(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    const auto state = words.Named("an operational state", OperationalStateNames());
    std::optional<std::uint8_t> present;
    if (words.HasMore()) {
        present = words.Named("a present state", PresentStateNames());
    }
    words.Finish();
    if (endPoint.terminus.stateSensors.contains(sensor) &&
        !endPoint.terminus.numericSensors.contains(sensor)) {
        FindState(endPoint, sensor).SetOperationalState(state);
    } else {
        FindNumeric(endPoint, sensor).SetState(state, present);
    }
    return Place(endPoint, sensor) + " has operational state " + std::to_string(state);
}

/** The described sensor, whose record can be changed. */
NumericSensor& FindDescription(LiveEndPoint& endPoint, std::uint16_t sensor) {
    for (auto& description : endPoint.terminus.description.numericSensors) {
        if (description.id == sensor) {
            return description;
        }
    }
    NoSensor(endPoint, "numeric", sensor);
}

std::optional<double>& FindThreshold(Thresholds& thresholds, const std::string& name) {
    const struct {
        std::string_view name;
        std::optional<double>& threshold;
    } all[] = {
        {"warning-high", thresholds.warningHigh}, {"critical-high", thresholds.criticalHigh},
        {"fatal-high", thresholds.fatalHigh},     {"warning-low", thresholds.warningLow},
        {"critical-low", thresholds.criticalLow}, {"fatal-low", thresholds.fatalLow},
    };
    for (const auto& entry : all) {
        if (entry.name == name) {
            return entry.threshold;
        }
    }
    throw CommandError("\"" + name + "\" is no threshold");
}

std::string Threshold(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    const auto name = words.Next("a threshold");
    const double value = words.Real("a value");
    words.Finish();
    auto& description = FindDescription(endPoint, sensor);
    FindThreshold(description.thresholds, name) = value;
    FindNumeric(endPoint, sensor).SetThresholds(description.thresholds);
    endPoint.terminus.RebuildRepository();
    return name + " of " + Place(endPoint, sensor) + " is " + Number(value) +
           "; the PDR repository has changed";
}

/** Moves the sensors with an id to the end of another list. Returns how many there were. */
template <typename Sensor>
std::ptrdiff_t MoveSensors(std::uint16_t id, std::vector<Sensor>& from, std::vector<Sensor>& to) {
    // Pairs of iterators: clang 14 can't take the ranges of libstdc++ here.
    const auto moved = std::stable_partition(from.begin(), from.end(),
                                             [&](const Sensor& sensor) { return sensor.id != id; });
    const auto count = from.end() - moved;
    std::move(moved, from.end(), std::back_inserter(to));
    from.erase(moved, from.end());
    return count;
}

std::string Drop(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    words.Finish();
    auto& terminus = endPoint.terminus;
    auto& [numeric, state] = terminus.dropped;
    if (MoveSensors(sensor, terminus.description.numericSensors, numeric) +
            MoveSensors(sensor, terminus.description.stateSensors, state) ==
        0) {
        NoSensor(endPoint, "numeric or state", sensor);
    }
    terminus.numericSensors.erase(sensor);
    terminus.stateSensors.erase(sensor);
    terminus.RebuildRepository();
    return Place(endPoint, sensor) + " is gone; the PDR repository has changed";
}

std::string Restore(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    const auto sensor = words.Integer<std::uint16_t>("a sensor id");
    words.Finish();
    auto& terminus = endPoint.terminus;
    auto& [numeric, state] = terminus.dropped;
    if (MoveSensors(sensor, numeric, terminus.description.numericSensors) +
            MoveSensors(sensor, state, terminus.description.stateSensors) ==
        0) {
        NoSensor(endPoint, "dropped", sensor);
    }
    terminus.StartSensors();
    terminus.RebuildRepository();
    return Place(endPoint, sensor) + " is back; the PDR repository has changed";
}

std::string Touch(Control& control, Words& words) {
    auto& endPoint = TakeEndPoint(control, words);
    words.Finish();
    endPoint.terminus.repository.Touch();
    return "the update time of the PDR repository of EID " +
           std::to_string(endPoint.description.eid) + " has moved";
}

} // namespace

std::span<const ControlCommand> SensorCommands() {
    static constexpr ControlCommand commands[] = {
        {"set", "EID SENSOR VALUE", Set},
        {"release", "EID SENSOR", Release},
        {"set-state", "EID SENSOR MEMBER STATE", SetState},
        {"operational", "EID SENSOR STATE [PRESENT]", Operational},
        {"threshold", "EID SENSOR NAME VALUE", Threshold},
        {"drop", "EID SENSOR", Drop},
        {"restore", "EID SENSOR", Restore},
        {"touch", "EID", Touch},
    };
    return commands;
}

} // namespace simulator
