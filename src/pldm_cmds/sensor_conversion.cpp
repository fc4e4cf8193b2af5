// SPDX-License-Identifier: Apache-2.0
#include "pldm_cmds/sensor_conversion.hpp"

#include "vocabulary/reading.hpp"

#include <cmath>
#include <limits>

namespace vantric {

std::int32_t TruncateToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= Limits::max()) {
        return Limits::max();
    }
    if (value <= Limits::min()) {
        return Limits::min();
    }
    return static_cast<std::int32_t>(value);
}

double ConvertReading(const __Temp_sensors& sensor) {
    const auto reading = static_cast<float>(sensor.presentReading);
    // Single precision, rounded once: published values depend on it down to the last digit.
    const float value = std::fma(reading, sensor.resolution, sensor.offset);
    switch (sensor.baseUnit) {
    case BASE_UNIT_DEGREES_C:
    case BASE_UNIT_WATTS:
        return TruncateToInt32(value);
    case BASE_UNIT_DEGREES_F:
        return TruncateToInt32((value - 32.0F) * 5.0F / 9.0F);
    case BASE_UNIT_KELVIN:
        return TruncateToInt32(static_cast<double>(value) - 273.15);
    default:
        return 0.0;
    }
}

std::int32_t ScaleValue(double value, std::int8_t unitModifier) {
    return TruncateToInt32(std::pow(10.0, unitModifier) * value);
}

} // namespace vantric
