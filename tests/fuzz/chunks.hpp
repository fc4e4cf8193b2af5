/** Several messages in one fuzz input. */
#pragma once

#include "pldm_cmds/bytes.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

/** Takes an input apart: each chunk is a u16 length and as many bytes, or what is left of them. */
class Chunks {
public:
    explicit Chunks(std::span<const std::uint8_t> input) : rest(input) {}

    bool Empty() const { return rest.empty(); }

    Bytes Next() {
        const std::size_t low = rest.empty() ? 0U : rest[0];
        const std::size_t high = rest.size() < 2 ? 0U : rest[1];
        rest = rest.subspan(std::min<std::size_t>(2, rest.size()));
        const auto chunk = rest.first(std::min(low | high << 8, rest.size()));
        rest = rest.subspan(chunk.size());
        return {chunk.begin(), chunk.end()};
    }

private:
    std::span<const std::uint8_t> rest;
};

/** The reverse, for seeds. */
inline Bytes AsChunk(const Bytes& bytes) {
    return Bytes().Add(static_cast<std::uint16_t>(bytes.size())).Add(bytes);
}
