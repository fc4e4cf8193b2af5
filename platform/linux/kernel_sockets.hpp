// SPDX-License-Identifier: Apache-2.0
/** The kernel's MCTP sockets, and nothing else of the kernel: tests put their own in this place. */
#pragma once

#include "file_descriptor.hpp"

#include <cstdint>
#include <optional>
#include <span>

namespace mctplink {

/** An endpoint of the kernel's MCTP. */
struct Peer {
    std::uint32_t network = 0;
    std::uint8_t eid = 0;

    auto operator<=>(const Peer&) const = default;
};

/** A message that has come. */
struct Arrival {
    Peer from;
    std::uint8_t messageType = 0;
    bool answers = false;   ///< true for a response, false for a request of the peer's own
    std::size_t length = 0; ///< bytes of the buffer that are filled
};

/** Opens a datagram socket. Not valid if it can't be, with the reason in errno. */
platform_support::FileDescriptor OpenMctpSocket();

/** Sends a request, for which the kernel picks a tag. Waits for room in the socket's buffer instead
 *  of failing for it. False if it fails, with the reason in errno. */
bool SendMctpRequest(int socket, const Peer& to, std::uint8_t messageType,
                     std::span<const std::uint8_t> message);

/** Takes a message that waits at the socket. Never waits; empty if there is none or it fails, with
 *  the reason in errno. A message that is longer than the buffer is cut. */
std::optional<Arrival> ReceiveMctp(int socket, std::span<std::uint8_t> buffer);

} // namespace mctplink
