// SPDX-License-Identifier: Apache-2.0
#include "pdr/utf16.hpp"

#include <array>
#include <bit>

namespace simulator {

namespace {

constexpr char32_t replacement = 0xFFFD;

/** Takes one character off the text. */
char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    const auto length = static_cast<std::size_t>(std::countl_one(lead));
    if (length == 0) {
        return lead;
    }
    constexpr std::array<char32_t, 5> leastOfLength{0, 0, 0x80, 0x800, 0x10000};
    if (length == 1 || length > 4 || text.size() < length - 1) {
        return replacement;
    }
    char32_t character = lead & (0x7FU >> length);
    for (std::size_t i = 0; i < length - 1; ++i) {
        const auto follower = static_cast<unsigned char>(text[i]);
        if ((follower & 0xC0U) != 0x80U) {
            return replacement;
        }
        character = character << 6 | (follower & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < leastOfLength[length] || character > 0x10FFFF || surrogate) {
        return replacement;
    }
    text.remove_prefix(length - 1);
    return character;
}

void AppendUnit(std::vector<std::uint8_t>& bytes, char32_t unit) {
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    bytes.push_back(static_cast<std::uint8_t>(unit));
}

} // namespace

std::vector<std::uint8_t> ToUtf16BigEndian(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (character < 0x10000) {
            AppendUnit(bytes, character);
        } else {
            AppendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10));
            AppendUnit(bytes, 0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    return bytes;
}

} // namespace simulator
