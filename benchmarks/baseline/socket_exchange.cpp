// SPDX-License-Identifier: Apache-2.0
/** Through the kernel's MCTP. */
#include "baseline/exchange.hpp"

#include <linux/mctp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace measured_baseline {

namespace {

constexpr sa_family_t mctpFamily = 45; // AF_MCTP
constexpr std::uint8_t pldmMessage = 1;
constexpr timeval timeout{.tv_sec = 5, .tv_usec = 0};

} // namespace

struct Exchange::Way {
    Way() : socket(::socket(mctpFamily, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        if (socket < 0) {
            throw std::system_error(errno, std::generic_category(), "socket");
        }
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
    }
    ~Way() { close(socket); }
    Way(const Way&) = delete;
    Way& operator=(const Way&) = delete;

    int socket;
    std::uint8_t eid = 0;
};

void Exchange::Begin() {}

Exchange::Exchange(std::uint8_t eid) : way(std::make_unique<Way>()) {
    way->eid = eid;
}

Exchange::~Exchange() = default;

std::size_t Exchange::Ask(std::span<const std::uint8_t> request, std::span<std::uint8_t> response) {
    sockaddr_mctp address{};
    address.smctp_family = mctpFamily;
    address.smctp_network = MCTP_NET_ANY;
    address.smctp_addr.s_addr = way->eid;
    address.smctp_type = pldmMessage;
    address.smctp_tag = MCTP_TAG_OWNER;
    if (sendto(way->socket, request.data(), request.size(), 0,
               reinterpret_cast<const sockaddr*>(&address), sizeof(address)) < 0) {
        return 0;
    }
    const ssize_t received = recv(way->socket, response.data(), response.size(), 0);
    return received < 0 ? 0 : static_cast<std::size_t>(received);
}

} // namespace measured_baseline
