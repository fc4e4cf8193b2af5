// SPDX-License-Identifier: Apache-2.0
#include "pldm_cmds/utf16.hpp"

namespace vantric {

namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, char32_t point) {
    const auto tail = [&out, point](int shift) {
        out += static_cast<char>(0x80 | (point >> shift & 0x3F));
    };
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | point >> 6);
        tail(0);
    } else if (point < 0x10000) {
        out += static_cast<char>(0xE0 | point >> 12);
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | point >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

std::string Utf8FromUtf16BigEndian(std::span<const std::uint8_t> text) {
    const std::size_t units = text.size() / 2;
    const auto unitAt = [text](std::size_t i) -> char32_t {
        return static_cast<char32_t>(text[2 * i] << 8 | text[2 * i + 1]);
    };
    std::string out;
    for (std::size_t i = 0; i < units; ++i) {
        const char32_t unit = unitAt(i);
        if (IsHighSurrogate(unit) && i + 1 < units && IsLowSurrogate(unitAt(i + 1))) {
            i += 1;
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(i) - 0xDC00));
        } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
            AppendUtf8(out, replacement);
        } else {
            AppendUtf8(out, unit);
        }
    }
    return out;
}

} // namespace vantric
