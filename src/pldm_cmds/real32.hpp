// SPDX-License-Identifier: Apache-2.0
/** Single-precision numbers of the numeric sensor PDRs. */
#pragma once

#include <cstdint>

namespace vantric {

/** Value of an IEEE 754 binary32 word. Infinities and NaNs give 255.0, so the result is finite.
 *  Negative zero gives -2^-127. */
float decodeReal32(std::uint32_t word);

/** base + m x 2^-23 in single precision, rounded once. base is 0 or 1; any other gives 0.0. */
float mantcal(std::uint32_t base, std::uint32_t m);

} // namespace vantric
