// SPDX-License-Identifier: Apache-2.0
#include "pldm/checksum.hpp"

namespace simulator {

std::uint32_t Crc32(std::span<const std::uint8_t> bytes) {
    constexpr std::uint32_t reflectedPolynomial = 0xEDB88320U;
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const auto byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc >> 1 ^ ((crc & 1U) != 0 ? reflectedPolynomial : 0U);
        }
    }
    return ~crc;
}

std::uint8_t Crc8(std::span<const std::uint8_t> bytes) {
    constexpr unsigned polynomial = 0x07U;
    unsigned crc = 0;
    for (const auto byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc << 1 ^ ((crc & 0x80U) != 0 ? polynomial : 0U)) & 0xFFU;
        }
    }
    return static_cast<std::uint8_t>(crc);
}

} // namespace simulator
