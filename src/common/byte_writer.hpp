// SPDX-License-Identifier: Apache-2.0
/** Builds requests field by field. */
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace vantric {

/** Appends little-endian fields to a byte vector. */
class ByteWriter {
public:
    /** Appends one field and returns the writer, so that a request reads like its table. */
    template <std::integral T>
    ByteWriter& Write(T value) {
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            bytes.push_back(
                static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> (8 * i)));
        }
        return *this;
    }

    /** Gives the bytes away; the writer is empty afterwards. */
    std::vector<std::uint8_t> Finish() { return std::exchange(bytes, {}); }

private:
    std::vector<std::uint8_t> bytes;
};

} // namespace vantric
