// SPDX-License-Identifier: Apache-2.0
/** Numbers from text. */
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace simulator {

/** The integer that the whole text is, decimal or hexadecimal with 0x, with a sign if it is
 *  negative. Empty if it is none or doesn't fit. */
std::optional<std::int64_t> ParseInteger(std::string_view text);

/** The finite number that the whole text is. Empty if it is none. */
std::optional<double> ParseReal(std::string_view text);

} // namespace simulator
