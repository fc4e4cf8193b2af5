// SPDX-License-Identifier: Apache-2.0
#include "vocabulary/sensor_tag.hpp"

#include <array>

namespace vantric {

namespace {

constexpr std::array<std::string_view, 3> tags{"sensorid_", "sensorid_ctrl1_", "sensorid_ctrl2_"};

// What stands before the tag.
constexpr std::string_view sensorMark = "_";
constexpr std::string_view stateSensorMark = "/sensor/state/";
constexpr std::string_view keyMark = "#";

std::string Tail(std::string_view mark, ControllerTag tag, std::uint16_t sensorId) {
    return std::string(mark) + TaggedId(tag, sensorId);
}

ControllerTag TagIn(std::string_view path, std::string_view mark) {
    for (const ControllerTag tag : {CONTROLLER_1, CONTROLLER_2}) {
        if (path.find(std::string(mark) + std::string(tags[tag])) != std::string_view::npos) {
            return tag;
        }
    }
    return CONTROLLER_UNTOLD;
}

} // namespace

std::string TaggedId(ControllerTag tag, std::uint16_t sensorId) {
    return std::string(tags[tag]) + std::to_string(sensorId);
}

std::string SensorTail(ControllerTag tag, std::uint16_t sensorId) {
    return Tail(sensorMark, tag, sensorId);
}

std::string StateSensorTail(ControllerTag tag, std::uint16_t sensorId) {
    return Tail(stateSensorMark, tag, sensorId);
}

std::string KeyTail(ControllerTag tag, std::uint16_t sensorId) {
    return Tail(keyMark, tag, sensorId);
}

ControllerTag TagInSensorPath(std::string_view path) {
    return TagIn(path, sensorMark);
}

ControllerTag TagInStateSensorPath(std::string_view path) {
    return TagIn(path, stateSensorMark);
}

} // namespace vantric
