// SPDX-License-Identifier: Apache-2.0
/** MCTP messages in packets (DSP0236). */
#pragma once

#include "pdr/record.hpp"

#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace simulator {

/** A whole message: its type is the first byte of the body. */
struct MctpMessage {
    std::uint8_t destination = 0; ///< EID; 0 is whoever hears it
    std::uint8_t source = 0;      ///< EID
    std::uint8_t tag = 0;         ///< 0 to 7
    bool tagOwner = false;        ///< set in requests
    Bytes body;
};

/** The packets of a message, each with at most 64 bytes of the body. */
std::vector<Bytes> ToPackets(const MctpMessage& message);

/** Puts messages together, several at a time as their sources and tags tell. A packet that is out
 *  of order costs its message. */
class Reassembly {
public:
    /** Takes a packet; returns the message that it completes, if it does. */
    std::optional<MctpMessage> Feed(std::span<const std::uint8_t> packet);

private:
    struct Partial {
        MctpMessage message;
        std::uint8_t nextSequence = 0;
    };
    std::map<std::pair<std::uint8_t, std::uint8_t>, Partial> partials; // by source and flags
};

} // namespace simulator
