// SPDX-License-Identifier: Apache-2.0
#include "pldm_cmds/real32.hpp"

#include "common/log.hpp"

#include <cmath>

namespace vantric {

namespace {

constexpr std::uint32_t mantissaBits = 23;
constexpr std::uint32_t mantissaMask = (1U << mantissaBits) - 1;
constexpr std::uint32_t exponentMask = 0xFF;
constexpr std::uint32_t signBit = 1U << 31;
constexpr int exponentBias = 127;
constexpr float notANumber = 255.0F;

} // namespace

float mantcal(std::uint32_t base, std::uint32_t m) {
    if (base > 1) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Wrong base value for mantissa calculation\n\n");
        return 0.0F;
    }
    constexpr float weight = 1.0F / (1U << mantissaBits);
    return std::fma(static_cast<float>(m), weight, static_cast<float>(base));
}

float decodeReal32(std::uint32_t word) {
    if (word == 0) {
        return 0.0F;
    }
    const std::uint32_t exponent = word >> mantissaBits & exponentMask;
    const std::uint32_t mantissa = word & mantissaMask;
    if (exponent == exponentMask) {
        return notANumber;
    }
    const float magnitude =
        exponent == 0 && mantissa != 0
            ? std::ldexp(mantcal(0, mantissa), 1 - exponentBias)
            : std::ldexp(mantcal(1, mantissa), static_cast<int>(exponent) - exponentBias);
    return (word & signBit) != 0 ? -magnitude : magnitude;
}

} // namespace vantric
