// SPDX-License-Identifier: Apache-2.0
#include "common/utf8.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace vantric {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD

/** Which first bytes begin a sequence of which length, and where its second byte lies. The narrower
 *  second bytes keep out overlong forms, surrogates and what lies above U+10FFFF. */
struct Lead {
    unsigned char first;
    unsigned char last;
    std::size_t length;
    unsigned char secondMin;
    unsigned char secondMax;
};

constexpr std::array<Lead, 9> leads{{
    {0x00, 0x7F, 1, 0x80, 0xBF},
    {0xC2, 0xDF, 2, 0x80, 0xBF},
    {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF},
    {0xED, 0xED, 3, 0x80, 0x9F},
    {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF},
    {0xF1, 0xF3, 4, 0x80, 0xBF},
    {0xF4, 0xF4, 4, 0x80, 0x8F},
}};

/** The bytes at the front of a text that make one character or one replacement. */
struct Piece {
    std::size_t length;
    bool valid;
};

bool IsNoncharacter(std::string_view character) {
    char32_t code = 0;
    for (const char byte : character) {
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    if (character.size() == 3) {
        code &= 0xFFFF; // the rest of the lead's length bits
    }
    return character.size() >= 3 &&
           ((code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF));
}

Piece FirstPiece(std::string_view text) {
    const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto lead = std::ranges::find_if(leads, [&](const Lead& candidate) {
        return byteAt(0) >= candidate.first && byteAt(0) <= candidate.last;
    });
    if (lead == leads.end()) {
        return {1, false};
    }
    std::size_t length = 1;
    while (length < lead->length && length < text.size()) {
        const unsigned char low = length == 1 ? lead->secondMin : 0x80;
        const unsigned char high = length == 1 ? lead->secondMax : 0xBF;
        if (byteAt(length) < low || byteAt(length) > high) {
            break;
        }
        ++length;
    }
    return {length, length == lead->length && !IsNoncharacter(text.substr(0, length))};
}

bool IsPlainAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return static_cast<signed char>(byte) > 0; });
}

} // namespace

std::string ValidUtf8(std::string text) {
    if (IsPlainAscii(text)) {
        return text; // nearly every text that comes by
    }
    std::string valid;
    valid.reserve(text.size());
    std::string_view rest(text.c_str()); // ends at the first NUL
    while (!rest.empty()) {
        const Piece piece = FirstPiece(rest);
        valid += piece.valid ? rest.substr(0, piece.length) : replacement;
        rest.remove_prefix(piece.length);
    }
    return valid;
}

} // namespace vantric
