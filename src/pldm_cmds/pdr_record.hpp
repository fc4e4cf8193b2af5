// SPDX-License-Identifier: Apache-2.0
/** Parts that all PDRs have. */
#pragma once

#include "common/byte_reader.hpp"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vantric {

/** Bytes of the common header: record handle, version, type, change number, length (DSP0248). */
inline constexpr std::size_t pdrHeaderSize = 10;

/** The type in the common header. */
inline std::uint8_t PdrTypeOf(std::span<const std::uint8_t> record) {
    constexpr std::size_t typeOffset = 5;
    return ByteReader(record).At<std::uint8_t>(typeOffset);
}

/** Reads a record's body: offset 0 is the first byte after the common header. */
inline ByteReader BodyOf(std::span<const std::uint8_t> record) {
    return ByteReader(record.subspan(std::min(pdrHeaderSize, record.size())));
}

/** A real32 field with its bits as they stand. */
inline float ReadReal32(ByteReader& reader) {
    return std::bit_cast<float>(reader.Read<std::uint32_t>());
}

} // namespace vantric
