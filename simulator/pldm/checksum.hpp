// SPDX-License-Identifier: Apache-2.0
/** Checksums of PLDM transfers. */
#pragma once

#include <cstdint>
#include <span>

namespace simulator {

/** CRC-32 as IEEE 802.3 has it, over version lists and FRU tables (DSP0240, DSP0257). */
std::uint32_t Crc32(std::span<const std::uint8_t> bytes);

/** CRC-8 with the polynomial x^8 + x^2 + x + 1, over a PDR in several parts (DSP0248). */
std::uint8_t Crc8(std::span<const std::uint8_t> bytes);

} // namespace simulator
