// SPDX-License-Identifier: Apache-2.0
/** Names in UTF-16. */
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace vantric {

/** UTF-8 of a text in UTF-16, big-endian. An unpaired surrogate gives U+FFFD; an odd last byte
 *  is no unit and gives nothing. */
std::string Utf8FromUtf16BigEndian(std::span<const std::uint8_t> text);

} // namespace vantric
