// SPDX-License-Identifier: Apache-2.0
/** What a reading is, from the PDR that describes it to the object that shows it. */
#pragma once

#include <cstdint>

namespace vantric {

/** PLDM base units that a published sensor can have (DSP0248). */
enum BaseUnit : std::uint8_t {
    BASE_UNIT_DEGREES_C = 2,
    BASE_UNIT_DEGREES_F = 3,
    BASE_UNIT_KELVIN = 4,
    BASE_UNIT_WATTS = 7,
};

/** Whether a numeric sensor of this base unit is kept. */
constexpr bool IsKeptUnit(std::uint8_t baseUnit) {
    return baseUnit == BASE_UNIT_DEGREES_C || baseUnit == BASE_UNIT_DEGREES_F ||
           baseUnit == BASE_UNIT_KELVIN || baseUnit == BASE_UNIT_WATTS;
}

/** The value of a reading that isn't available. */
inline constexpr std::int32_t readingUnavailable = 2147483647;

} // namespace vantric
