// SPDX-License-Identifier: Apache-2.0
/** The only way by which bytes from outside are read. */
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace vantric {

/** Reads little-endian fields from a span, in order or at an offset, and knows where it ends.
 *
 * A byte past the end reads as 0, as if the buffer were zero-filled, and sets Truncated(): a
 * parser that tolerates a short message goes on, one that doesn't asks once at its end. */
class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes(bytes) {}

    /** Reads the next field. */
    template <std::integral T>
    T Read() {
        return static_cast<T>(ReadUnsigned(sizeof(T)));
    }

    /** Reads the next width bytes, 0 to 8, zero-extended. */
    std::uint64_t ReadUnsigned(std::size_t width) {
        std::uint64_t value = 0;
        const auto field = Take(width);
        for (std::size_t i = 0; i < field.size(); ++i) {
            value |= static_cast<std::uint64_t>(field[i]) << (8 * i);
        }
        return value;
    }

    /** Reads the field at an offset from the beginning; the position stays. */
    template <std::integral T>
    T At(std::size_t offset) {
        const std::size_t back = position;
        position = offset;
        const T value = Read<T>();
        position = back;
        return value;
    }

    /** Takes the next count bytes, or as many as there are. */
    std::span<const std::uint8_t> Take(std::size_t count) {
        const std::size_t available = std::min(count, Remaining());
        truncated = truncated || available < count;
        const auto field = bytes.subspan(std::min(position, bytes.size()), available);
        position += available;
        return field;
    }

    /** Skips count bytes. */
    void Skip(std::size_t count) { Take(count); }

    /** Sets the position from the beginning; a position past the end has nothing to read. */
    void Seek(std::size_t offset) { position = offset; }

    std::size_t Position() const { return position; }
    std::size_t Remaining() const { return position < bytes.size() ? bytes.size() - position : 0; }

    /** True if any read so far went past the end. */
    bool Truncated() const { return truncated; }

private:
    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
    bool truncated = false;
};

} // namespace vantric
