// SPDX-License-Identifier: Apache-2.0
/** The byte order of the platform's records. */
#pragma once

#include <bit>
#include <concepts>

namespace board {

/** A field as the records have it: little-endian. */
template <std::unsigned_integral T>
constexpr T LittleEndian(T value) {
    if constexpr (std::endian::native == std::endian::little || sizeof(T) == 1) {
        return value;
    } else if constexpr (sizeof(T) == 2) {
        return __builtin_bswap16(value);
    } else {
        return __builtin_bswap32(value);
    }
}

} // namespace board
