// SPDX-License-Identifier: Apache-2.0
#include "text.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace monitor {

namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/** Cuts the run of digits from the front of text and returns it without leading zeros. */
std::string_view TakeNumber(std::string_view& text) {
    const auto end = std::ranges::find_if_not(text, IsDigit);
    std::string_view number = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

} // namespace

std::string Printable(std::string_view text) {
    std::string printable;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7f) {
            printable += character;
        } else if ((byte & 0xc0U) != 0x80) { // a UTF-8 character counts with its first byte
            printable += '?';
        }
    }
    return printable;
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& character : lower) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return lower;
}

std::string Decimal(double number) {
    std::array<char, 400> text{}; // holds any double in full
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 3);
    std::string trimmed(text.data(), result.ptr);
    trimmed.erase(trimmed.find_last_not_of('0') + 1);
    if (trimmed.ends_with('.')) {
        trimmed.pop_back();
    }
    return trimmed;
}

std::strong_ordering NaturalOrder(std::string_view left, std::string_view right) {
    const std::string_view wholeLeft = left;
    const std::string_view wholeRight = right;
    while (!left.empty() && !right.empty()) {
        if (IsDigit(left.front()) && IsDigit(right.front())) {
            const std::string_view leftNumber = TakeNumber(left);
            const std::string_view rightNumber = TakeNumber(right);
            const auto bySize = leftNumber.size() <=> rightNumber.size();
            const auto order = bySize != 0 ? bySize : leftNumber <=> rightNumber;
            if (order != 0) {
                return order;
            }
        } else if (left.front() != right.front()) {
            return left.front() <=> right.front();
        } else {
            left.remove_prefix(1);
            right.remove_prefix(1);
        }
    }
    const auto order = left.size() <=> right.size();
    return order != 0 ? order : wholeLeft <=> wholeRight;
}

} // namespace monitor
