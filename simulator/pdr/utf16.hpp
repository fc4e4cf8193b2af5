// SPDX-License-Identifier: Apache-2.0
/** Text of auxiliary names. */
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace simulator {

/** UTF-8 as UTF-16 big-endian without a terminator. A byte that begins no UTF-8 character becomes
 *  U+FFFD. */
std::vector<std::uint8_t> ToUtf16BigEndian(std::string_view text);

} // namespace simulator
