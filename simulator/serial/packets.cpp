// SPDX-License-Identifier: Apache-2.0
#include "serial/packets.hpp"

#include <algorithm>

namespace simulator {

namespace {

constexpr std::uint8_t headerVersion = 1;
constexpr std::uint8_t startOfMessage = 0x80;
constexpr std::uint8_t endOfMessage = 0x40;
constexpr std::uint8_t tagOwnerBit = 0x08;
constexpr std::uint8_t tagBits = 0x07;
constexpr std::uint8_t sequenceBits = 0x03;
constexpr int sequenceShift = 4;
constexpr std::size_t headerSize = 4;
constexpr std::size_t payloadSize = 64;
constexpr std::size_t longestBody = 65536 + 1;

} // namespace

std::vector<Bytes> ToPackets(const MctpMessage& message) {
    std::vector<Bytes> packets;
    std::size_t begin = 0;
    do {
        const auto end = std::min(begin + payloadSize, message.body.size());
        const auto sequence = static_cast<std::uint8_t>(packets.size() & sequenceBits);
        const int flags =
            (begin == 0 ? startOfMessage : 0) | (end == message.body.size() ? endOfMessage : 0) |
            sequence << sequenceShift | (message.tagOwner ? tagOwnerBit : 0) | message.tag;
        Bytes packet{headerVersion, message.destination, message.source,
                     static_cast<std::uint8_t>(flags)};
        packet.insert(packet.end(), message.body.begin() + static_cast<std::ptrdiff_t>(begin),
                      message.body.begin() + static_cast<std::ptrdiff_t>(end));
        packets.push_back(std::move(packet));
        begin = end;
    } while (begin < message.body.size());
    return packets;
}

std::optional<MctpMessage> Reassembly::Feed(std::span<const std::uint8_t> packet) {
    if (packet.size() <= headerSize || (packet[0] & 0x0F) != headerVersion) {
        return std::nullopt;
    }
    const std::uint8_t flags = packet[3];
    const auto sequence = static_cast<std::uint8_t>(flags >> sequenceShift & sequenceBits);
    const auto owner = static_cast<std::uint8_t>(flags & (tagOwnerBit | tagBits));
    const std::pair key{packet[2], owner};
    if ((flags & startOfMessage) != 0) {
        partials[key] = {.message = {.destination = packet[1],
                                     .source = packet[2],
                                     .tag = static_cast<std::uint8_t>(flags & tagBits),
                                     .tagOwner = (flags & tagOwnerBit) != 0,
                                     .body = {}},
                         .nextSequence = sequence};
    }
    const auto found = partials.find(key);
    if (found == partials.end()) {
        return std::nullopt;
    }
    auto& [message, nextSequence] = found->second;
    const auto payload = packet.subspan(headerSize);
    if (sequence != nextSequence || message.body.size() + payload.size() > longestBody) {
        partials.erase(found);
        return std::nullopt;
    }
    message.body.insert(message.body.end(), payload.begin(), payload.end());
    nextSequence = static_cast<std::uint8_t>((sequence + 1) & sequenceBits);
    if ((flags & endOfMessage) == 0) {
        return std::nullopt;
    }
    auto whole = std::move(message);
    partials.erase(found);
    return whole;
}

} // namespace simulator
