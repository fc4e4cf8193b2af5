// SPDX-License-Identifier: Apache-2.0
/** From a raw reading to the whole number that the rest of the daemon works with. */
#pragma once

#include "records/extracted_data.hpp"

#include <cstdint>

namespace vantric {

/** Cuts the fraction off; a value beyond the range gives its nearest limit, NaN gives 0. */
std::int32_t TruncateToInt32(double value);

/** Value of sensor.presentReading: degrees C for temperatures, watts for power, 0.0 for any other
 *  base unit. In whole units, not yet scaled by the unit modifier. */
double ConvertReading(const __Temp_sensors& sensor);

/** The value times ten to the power unitModifier, cut and saturated. */
std::int32_t ScaleValue(double value, std::int8_t unitModifier);

} // namespace vantric
