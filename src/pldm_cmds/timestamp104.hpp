/** Dates on the wire. */
#pragma once

#include "common/byte_reader.hpp"
#include "records/extracted_data.hpp"

namespace vantric {

/** Bytes of a timestamp104 (DSP0240). */
inline constexpr std::size_t timestamp104Size = 13;

/** Reads the next 13 bytes. */
Timestamp104 ReadTimestamp104(ByteReader& reader);

} // namespace vantric
