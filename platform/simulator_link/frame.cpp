// SPDX-License-Identifier: Apache-2.0
#include "frame.hpp"

#include "payload.hpp"

#include <utility>

namespace simulator_link {

namespace {

constexpr std::size_t lengthSize = 4;
constexpr std::size_t headSize = 5;
constexpr std::size_t frameLimit = 16UL * 1024 * 1024;

} // namespace

std::vector<std::uint8_t> EncodeFrame(const Frame& frame) {
    PayloadWriter writer;
    writer.Write(static_cast<std::uint32_t>(headSize + frame.payload.size()))
        .Write(static_cast<std::uint8_t>(frame.kind))
        .Write(frame.tag)
        .Write(std::span<const std::uint8_t>(frame.payload));
    return writer.Finish();
}

void FrameAssembler::Feed(std::span<const std::uint8_t> bytes) {
    buffer.insert(buffer.end(), bytes.begin(), bytes.end());
}

std::optional<Frame> FrameAssembler::Next() {
    if (broken || buffer.size() < lengthSize) {
        return std::nullopt;
    }
    PayloadReader reader(buffer);
    const std::size_t length = reader.Read<std::uint32_t>();
    broken = length < headSize || length > frameLimit;
    if (broken || reader.Remaining() < length) {
        return std::nullopt;
    }
    Frame frame;
    frame.kind = static_cast<FrameKind>(reader.Read<std::uint8_t>());
    frame.tag = reader.Read<std::uint32_t>();
    const auto payload = reader.Take(length - headSize);
    frame.payload.assign(payload.begin(), payload.end());
    buffer.erase(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(lengthSize + length));
    return frame;
}

} // namespace simulator_link
