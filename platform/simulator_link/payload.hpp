// SPDX-License-Identifier: Apache-2.0
/** Little-endian fields of a payload. */
#pragma once

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator_link {

/** Appends little-endian fields to a byte vector. */
class PayloadWriter {
public:
    /** Appends one field and returns the writer, so that a message reads like its table. */
    template <std::integral T>
    PayloadWriter& Write(T value) {
        return WriteUnsigned(static_cast<std::uint64_t>(value), sizeof(T));
    }

    /** Appends the bits of a single-precision value. */
    PayloadWriter& Write(float value) { return Write(std::bit_cast<std::uint32_t>(value)); }

    /** Appends bytes as they stand. */
    PayloadWriter& Write(std::span<const std::uint8_t> field) {
        bytes.insert(bytes.end(), field.begin(), field.end());
        return *this;
    }

    /** Appends the bytes of a text, without a terminator. */
    PayloadWriter& Write(std::string_view text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }

    /** Appends the low width bytes of a value. */
    PayloadWriter& WriteUnsigned(std::uint64_t value, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(i < 8 ? value >> (8 * i) : 0));
        }
        return *this;
    }

    /** Gives the bytes away; the writer is empty afterwards. */
    std::vector<std::uint8_t> Finish() { return std::exchange(bytes, {}); }

private:
    std::vector<std::uint8_t> bytes;
};

/** Reads little-endian fields in order. Past the end it reads 0 and sets Truncated(). */
class PayloadReader {
public:
    explicit PayloadReader(std::span<const std::uint8_t> bytes) : bytes(bytes) {}

    /** Reads the next field. */
    template <std::integral T>
    T Read() {
        std::uint64_t value = 0;
        const auto field = Take(sizeof(T));
        for (std::size_t i = 0; i < field.size(); ++i) {
            value |= static_cast<std::uint64_t>(field[i]) << (8 * i);
        }
        return static_cast<T>(value);
    }

    /** Takes the next count bytes, or as many as there are. */
    std::span<const std::uint8_t> Take(std::size_t count) {
        const std::size_t available = std::min(count, bytes.size());
        truncated = truncated || available < count;
        const auto field = bytes.first(available);
        bytes = bytes.subspan(available);
        return field;
    }

    /** Takes everything that is left. */
    std::span<const std::uint8_t> Rest() { return Take(bytes.size()); }

    /** Takes everything that is left as a text. */
    std::string RestAsText() {
        const auto rest = Rest();
        return {rest.begin(), rest.end()};
    }

    std::size_t Remaining() const { return bytes.size(); }

    /** True if any read so far went past the end. */
    bool Truncated() const { return truncated; }

private:
    std::span<const std::uint8_t> bytes;
    bool truncated = false;
};

} // namespace simulator_link
