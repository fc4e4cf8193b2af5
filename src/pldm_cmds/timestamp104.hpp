// SPDX-License-Identifier: Apache-2.0
/** Dates on the wire. */
#pragma once

#include "common/byte_reader.hpp"
#include "records/extracted_data.hpp"

namespace vantric {

/** Bytes of a timestamp104 (DSP0240). */
inline constexpr std::size_t timestamp104Size = 13;

/** Reads the next 13 bytes. */
Timestamp104 ReadTimestamp104(ByteReader& reader);

/** Text of a timestamp104, such as "2021-03-12 - 07:05:09"; empty where the value is short or says
 *  that it isn't to be relied on. */
std::string convertToTimestamp104(std::span<const std::uint8_t> value);

} // namespace vantric
