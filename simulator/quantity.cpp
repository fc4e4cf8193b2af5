// SPDX-License-Identifier: Apache-2.0
#include "quantity.hpp"

#include <bit>
#include <cmath>
#include <limits>

namespace simulator {

namespace {

/** Bounds in double are exact for 32 bits; for 64 bits the upper one is just out of reach. */
template <typename T>
std::uint64_t Clamped(double value) {
    constexpr auto least = static_cast<double>(std::numeric_limits<T>::min());
    constexpr auto most = static_cast<double>(std::numeric_limits<T>::max());
    const double rounded = std::round(value);
    if (!(rounded > least)) {
        return static_cast<std::uint64_t>(std::numeric_limits<T>::min());
    }
    if (rounded >= most) {
        return static_cast<std::uint64_t>(std::numeric_limits<T>::max());
    }
    return static_cast<std::uint64_t>(static_cast<T>(rounded));
}

} // namespace

NumberFormat FormatOfDataSize(std::uint8_t dataSize) {
    return dataSize <= 7 ? static_cast<NumberFormat>(dataSize) : NumberFormat::Uint64;
}

NumberFormat FormatOfRangeField(std::uint8_t rangeFormat) {
    switch (rangeFormat) {
    case 6:
        return NumberFormat::Real32;
    case 7:
        return NumberFormat::Uint64;
    case 8:
        return NumberFormat::Sint64;
    default:
        return rangeFormat < 6 ? static_cast<NumberFormat>(rangeFormat) : NumberFormat::Uint8;
    }
}

std::size_t WidthOf(NumberFormat format) {
    switch (format) {
    case NumberFormat::Uint8:
    case NumberFormat::Sint8:
        return 1;
    case NumberFormat::Uint16:
    case NumberFormat::Sint16:
        return 2;
    case NumberFormat::Uint64:
    case NumberFormat::Sint64:
        return 8;
    default:
        return 4;
    }
}

std::uint64_t BitsOf(double value, NumberFormat format) {
    switch (format) {
    case NumberFormat::Uint8:
        return Clamped<std::uint8_t>(value);
    case NumberFormat::Sint8:
        return Clamped<std::int8_t>(value);
    case NumberFormat::Uint16:
        return Clamped<std::uint16_t>(value);
    case NumberFormat::Sint16:
        return Clamped<std::int16_t>(value);
    case NumberFormat::Uint32:
        return Clamped<std::uint32_t>(value);
    case NumberFormat::Sint32:
        return Clamped<std::int32_t>(value);
    case NumberFormat::Uint64:
        return Clamped<std::uint64_t>(value);
    case NumberFormat::Sint64:
        return Clamped<std::int64_t>(value);
    case NumberFormat::Real32:
        return std::bit_cast<std::uint32_t>(static_cast<float>(value));
    }
    return 0;
}

double RawOf(double value, float resolution, float offset, int modifier) {
    if (resolution == 0.0F) {
        return 0.0;
    }
    return (value / std::pow(10.0, modifier) - static_cast<double>(offset)) /
           static_cast<double>(resolution);
}

} // namespace simulator
