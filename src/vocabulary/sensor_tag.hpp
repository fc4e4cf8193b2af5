// SPDX-License-Identifier: Apache-2.0
/** Which controller a sensor belongs to, and how paths and keys end that name it: its id, after a
 * tag that tells the controller. */
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantric {

/** Which controller of its device a sensor's paths and keys tell of. */
enum ControllerTag : std::uint8_t {
    CONTROLLER_UNTOLD = 0, ///< the device has one controller only: "sensorid_"
    CONTROLLER_1 = 1,      ///< "sensorid_ctrl1_"
    CONTROLLER_2 = 2,      ///< "sensorid_ctrl2_"
};

/** A controller of a device. */
struct Controller {
    std::uint8_t number = 1; ///< from 1
    ControllerTag tag = CONTROLLER_UNTOLD;

    constexpr bool IsSecond() const { return tag == CONTROLLER_2; }
};

/** That of a device which has no other. */
inline constexpr Controller onlyController{};

/** One of several, by its number from 1. Paths tell a third as the first. */
constexpr Controller OneOfSeveral(std::uint8_t number) {
    return {number, number == 2 ? CONTROLLER_2 : CONTROLLER_1};
}

/** The tag and the id: "sensorid_5", "sensorid_ctrl1_5", "sensorid_ctrl2_5". */
std::string TaggedId(ControllerTag tag, std::uint16_t sensorId);

/** The end of a numeric sensor's path: "_sensorid_5". */
std::string SensorTail(ControllerTag tag, std::uint16_t sensorId);

/** The end of a state sensor's path: "/sensor/state/sensorid_5". */
std::string StateSensorTail(ControllerTag tag, std::uint16_t sensorId);

/** The end of a Key property: "#sensorid_5". */
std::string KeyTail(ControllerTag tag, std::uint16_t sensorId);

/** The tag that the path of a numeric sensor holds. */
ControllerTag TagInSensorPath(std::string_view path);

/** The tag that the path of a state sensor holds. */
ControllerTag TagInStateSensorPath(std::string_view path);

} // namespace vantric
