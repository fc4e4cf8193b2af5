// SPDX-License-Identifier: Apache-2.0
/** Text for people: printable, and ordered as they count. */
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace monitor {

/** The text in printable ASCII, each other character as one question mark: what a card says must
 *  not move the cursor, and each character of a table takes one column. */
std::string Printable(std::string_view text);

/** The text with its ASCII letters in lower case. */
std::string LowerCase(std::string_view text);

/** A number with at most three decimals. */
std::string Decimal(double number);

/** Orders runs of digits by their number, all else byte by byte: "slot 3" before "slot 10". Texts
 *  that differ are never equal. */
std::strong_ordering NaturalOrder(std::string_view left, std::string_view right);

} // namespace monitor
