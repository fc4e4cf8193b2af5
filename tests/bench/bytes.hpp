/** Messages as they are written down by hand. */
#pragma once

#include <charconv>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace test {

/** "80 00 02" as bytes. */
inline std::vector<std::uint8_t> Bytes(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 3) {
        std::uint8_t byte = 0;
        std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
        bytes.push_back(byte);
    }
    return bytes;
}

/** Bytes as "80 00 02", so that a difference can be read. */
inline std::string Text(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : bytes) {
        text += text.empty() ? "" : " ";
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

} // namespace test
