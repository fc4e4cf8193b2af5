// SPDX-License-Identifier: Apache-2.0
/** Values in fields of a given width. */
#pragma once

#include <cstddef>
#include <cstdint>

namespace simulator {

/** How a field of numbers is coded. The order is that of sensorDataSize (DSP0248). */
enum class NumberFormat : std::uint8_t {
    Uint8,
    Sint8,
    Uint16,
    Sint16,
    Uint32,
    Sint32,
    Uint64,
    Sint64,
    Real32,
};

/** The format of a sensorDataSize; 64 bits for a size that none has. */
NumberFormat FormatOfDataSize(std::uint8_t dataSize);
/** The format of a rangeFieldFormat, which has real32 at 6; one byte for a format that none has. */
NumberFormat FormatOfRangeField(std::uint8_t rangeFormat);

/** Bytes of a field. */
std::size_t WidthOf(NumberFormat format);

/** The bits of a value, rounded to the nearest and kept within what the format can hold. */
std::uint64_t BitsOf(double value, NumberFormat format);

/** What a sensor with this resolution, offset and unit modifier has to report for a value in its
 *  unit; 0 for a resolution of 0. */
double RawOf(double value, float resolution, float offset, int modifier);

} // namespace simulator
