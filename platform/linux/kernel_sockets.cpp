// SPDX-License-Identifier: Apache-2.0
#include "kernel_sockets.hpp"

#include <linux/mctp.h>
#include <sys/socket.h>

#include <cerrno>

namespace mctplink {

namespace {

constexpr sa_family_t mctpFamily = 45; // AF_MCTP, which older C libraries don't know

} // namespace

platform_support::FileDescriptor OpenMctpSocket() {
    return platform_support::FileDescriptor(::socket(mctpFamily, SOCK_DGRAM | SOCK_CLOEXEC, 0));
}

bool SendMctpRequest(int socket, const Peer& to, std::uint8_t messageType,
                     std::span<const std::uint8_t> message) {
    sockaddr_mctp address{};
    address.smctp_family = mctpFamily;
    address.smctp_network = to.network;
    address.smctp_addr.s_addr = to.eid;
    address.smctp_type = messageType;
    address.smctp_tag = MCTP_TAG_OWNER;
    ssize_t sent = -1;
    do {
        sent = sendto(socket, message.data(), message.size(), 0,
                      reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    } while (sent < 0 && errno == EINTR);
    return sent >= 0;
}

std::optional<Arrival> ReceiveMctp(int socket, std::span<std::uint8_t> buffer) {
    sockaddr_mctp address{};
    socklen_t size = sizeof(address);
    const ssize_t received = recvfrom(socket, buffer.data(), buffer.size(), MSG_DONTWAIT,
                                      reinterpret_cast<sockaddr*>(&address), &size);
    if (received < 0) {
        return std::nullopt;
    }
    return Arrival{.from = {.network = address.smctp_network, .eid = address.smctp_addr.s_addr},
                   .messageType = address.smctp_type,
                   .answers = (address.smctp_tag & MCTP_TAG_OWNER) == 0,
                   .length = static_cast<std::size_t>(received)};
}

} // namespace mctplink
