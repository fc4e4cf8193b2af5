/** Names of numeric sensors that have none of their own. */
#pragma once

#include "vocabulary/reading.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** "power" or "temp" with the sensor id: "temp5". */
inline std::string DefaultSensorName(std::uint8_t baseUnit, std::uint16_t sensorId) {
    return (baseUnit == BASE_UNIT_WATTS ? "power" : "temp") + std::to_string(sensorId);
}

/** True for the base units of which a sensor is kept. */
constexpr bool IsKeptUnit(std::uint8_t baseUnit) {
    return baseUnit == BASE_UNIT_DEGREES_C || baseUnit == BASE_UNIT_DEGREES_F ||
           baseUnit == BASE_UNIT_KELVIN || baseUnit == BASE_UNIT_WATTS;
}

} // namespace vantric
