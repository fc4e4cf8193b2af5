// SPDX-License-Identifier: Apache-2.0
/** Bytes as a card would send them. */
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/** A byte vector that is filled field by field, little-endian. */
class Bytes : public std::vector<std::uint8_t> {
public:
    using vector::vector;

    /** Appends an integer in the width of its type. */
    template <std::integral T>
    Bytes& Add(T value) {
        return AddWide(static_cast<std::uint64_t>(value), sizeof(T));
    }

    /** Appends the low width bytes. */
    Bytes& AddWide(std::uint64_t value, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) {
            push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
        return *this;
    }

    Bytes& Add(std::string_view text) {
        insert(end(), text.begin(), text.end());
        return *this;
    }

    Bytes& Add(const Bytes& other) {
        insert(end(), other.begin(), other.end());
        return *this;
    }

    /** Bytes from hexadecimal digits, as a dump shows them: "81 00 02". */
    static Bytes FromHex(std::string_view text) {
        Bytes bytes;
        for (std::size_t i = 0; i + 1 < text.size(); i += 3) {
            bytes.push_back(
                static_cast<std::uint8_t>(std::stoul(std::string(text.substr(i, 2)), nullptr, 16)));
        }
        return bytes;
    }

    Bytes& AddZeros(std::size_t count) {
        insert(end(), count, 0);
        return *this;
    }
};

/** The bytes from one position up to another. */
inline Bytes Slice(const Bytes& bytes, std::size_t from, std::size_t to) {
    return {bytes.begin() + static_cast<long>(from), bytes.begin() + static_cast<long>(to)};
}

/** All bytes but the last ones. */
inline Bytes Cut(const Bytes& bytes, std::size_t less = 1) {
    return Slice(bytes, 0, bytes.size() - less);
}

/** Bytes as a dump shows them, so that a difference can be read. */
inline std::string HexText(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : bytes) {
        text += text.empty() ? "" : " ";
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}
