// SPDX-License-Identifier: Apache-2.0
#include "serial/framing.hpp"

#include <utility>

namespace simulator {

namespace {

constexpr std::uint8_t flag = 0x7E;
constexpr std::uint8_t escape = 0x7D;
constexpr std::uint8_t escapedBit = 0x20;
constexpr std::uint8_t revision = 1;
constexpr std::size_t headerSize = 2;   // revision and length
constexpr std::size_t checkSumSize = 2; // high byte first
constexpr std::size_t longestFrame = headerSize + 255 + checkSumSize;

/** CCITT, reflected, from 0xFFFF, not inverted. */
std::uint16_t CheckSum(std::span<const std::uint8_t> bytes) {
    constexpr std::uint16_t polynomial = 0x8408;
    std::uint16_t sum = 0xFFFF;
    for (const auto byte : bytes) {
        sum ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            sum = static_cast<std::uint16_t>((sum >> 1) ^ ((sum & 1) != 0 ? polynomial : 0));
        }
    }
    return sum;
}

} // namespace

Bytes EncodeSerial(std::span<const std::uint8_t> packet) {
    Bytes plain{revision, static_cast<std::uint8_t>(packet.size())};
    plain.insert(plain.end(), packet.begin(), packet.end());
    const auto sum = CheckSum(plain);
    Bytes line{flag, plain[0], plain[1]};
    for (const auto byte : packet) {
        if (byte == flag || byte == escape) {
            line.push_back(escape);
            line.push_back(byte ^ escapedBit);
        } else {
            line.push_back(byte);
        }
    }
    line.push_back(static_cast<std::uint8_t>(sum >> 8));
    line.push_back(static_cast<std::uint8_t>(sum));
    line.push_back(flag);
    return line;
}

std::optional<Bytes> SerialDeframer::Feed(std::uint8_t byte) {
    const bool inPacket =
        frame.size() >= headerSize && frame.size() < headerSize + std::size_t{frame[1]};
    // The check sum isn't escaped, so a flag within it is one of its bytes.
    const bool inCheckSum = frame.size() >= headerSize && !inPacket &&
                            frame.size() < headerSize + frame[1] + checkSumSize;
    if (byte == flag && !inCheckSum) {
        auto packet = Finish();
        frame.clear();
        inside = true;
        escaped = false;
        return packet;
    }
    if (!inside) {
        return std::nullopt;
    }
    if (inPacket && byte == escape) {
        escaped = true;
        return std::nullopt;
    }
    frame.push_back(std::exchange(escaped, false) ? byte ^ escapedBit : byte);
    if (frame[0] != revision || frame.size() > longestFrame) {
        inside = false;
        frame.clear();
    }
    return std::nullopt;
}

std::optional<Bytes> SerialDeframer::Finish() {
    if (frame.size() < headerSize + checkSumSize ||
        frame.size() != headerSize + frame[1] + checkSumSize) {
        return std::nullopt;
    }
    const auto plain = std::span(frame).first(frame.size() - checkSumSize);
    const auto sum = static_cast<std::uint16_t>(frame[plain.size()] << 8 | frame.back());
    if (CheckSum(plain) != sum) {
        return std::nullopt;
    }
    return Bytes(plain.begin() + headerSize, plain.end());
}

} // namespace simulator
