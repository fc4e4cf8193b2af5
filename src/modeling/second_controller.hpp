// SPDX-License-Identifier: Apache-2.0
/** What the second controller of a device changes in paths, names and keys. Its sensors hang on no
 *  tree: they are numbered after the ports of the first controller. */
#pragma once

#include "publisher/requests.hpp"
#include "vocabulary/sensor_tag.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** The piece of an inventory path for a controller. */
std::string ControllerPiece(const Controller& controller);

/** The instance of a sensor's entity where the sensor belongs to its controller as a whole: a
 * second network controller counts itself as the first. */
std::uint16_t InstanceOnController(const __Sensor& sensor, const Controller& controller);

/** The tail of a numeric sensor's path by which its readings find the object. */
std::string ReadingKey(ControllerTag tag, std::uint16_t sensorId);

/** Numbers the sensors of a second controller, in their order. Each count is a byte and wraps. */
class SecondControllerNumbers {
public:
    /** @param ports of the first controller */
    explicit SecondControllerNumbers(std::uint8_t ports)
        : portCount(ports), powerCount(ports), tempCount(ports), connectorCount(ports) {}

    /** Gives a numeric sensor its instance and its entity's name. */
    void Number(SensorInsertRequest& request);

    /** Gives a state sensor its instance. Returns the piece of its path for the entity. */
    std::string Number(StateSensorRequest& request);

private:
    const std::uint8_t portCount;
    std::uint8_t powerCount;     ///< number given last to a power sensor
    std::uint8_t tempCount;      ///< to a temperature sensor
    std::uint8_t connectorCount; ///< to a connector
};

} // namespace vantric
