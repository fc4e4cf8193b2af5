// SPDX-License-Identifier: Apache-2.0
/** The kernel's MCTP, played: socket pairs in the place of its sockets. One source of an executable
 *  includes this. */
#pragma once

#include "kernel_sockets.hpp"
#include "pldm_cmds/bytes.hpp"
#include "support/eventually.hpp"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <map>
#include <memory>
#include <mutex>

namespace vantric::test {

/** A request that the kernel took, and the end of its socket from which an answer comes. */
struct SentRequest {
    mctplink::Peer to;
    Bytes message;
    std::shared_ptr<platform_support::FileDescriptor> far;

    /** Lets a message arrive; a closed socket misses it. */
    void Answer(mctplink::Arrival arrival, Bytes answer) const {
        std::array<iovec, 2> pieces{{{&arrival, sizeof(arrival)}, {answer.data(), answer.size()}}};
        msghdr message{};
        message.msg_iov = pieces.data();
        message.msg_iovlen = pieces.size();
        sendmsg(far->Get(), &message, MSG_NOSIGNAL);
    }

    /** Lets the response come. */
    void Answer(const Bytes& answer) const { Answer({to, 1, true, 0}, answer); }

    /** Whether the library has closed the socket, on which the kernel frees the request's tag. */
    bool Closed() const {
        pollfd entry{far->Get(), 0, 0};
        return poll(&entry, 1, 0) == 1 && (entry.revents & POLLHUP) != 0;
    }
};

struct PlayedKernel {
    std::mutex mutex;
    std::map<int, std::shared_ptr<platform_support::FileDescriptor>> farEnds; // by socket
    std::vector<SentRequest> sent;
    std::size_t opened = 0;     ///< sockets so far
    int refusal = 0;            ///< the errno of every sending; set while nothing is sent
    bool answersItself = false; ///< with the request's own bytes; set while nothing is sent

    /** Waits for the next request and returns it. */
    SentRequest Take() {
        EXPECT_TRUE(Eventually([this] {
            const std::lock_guard lock(mutex);
            return !sent.empty();
        }));
        const std::lock_guard lock(mutex);
        const auto request = sent.at(0);
        sent.erase(sent.begin());
        return request;
    }

    bool Send(int socket, const mctplink::Peer& to, std::span<const std::uint8_t> message) {
        const std::lock_guard lock(mutex);
        const SentRequest request{to, Bytes(message.begin(), message.end()), farEnds[socket]};
        if (refusal != 0) {
            errno = refusal;
            return false;
        }
        if (answersItself) {
            request.Answer(request.message);
        } else {
            sent.push_back(request);
        }
        return true;
    }
};

inline std::unique_ptr<PlayedKernel> kernel; ///< the one of the running test

} // namespace vantric::test

namespace mctplink {

using vantric::test::kernel;

platform_support::FileDescriptor OpenMctpSocket() {
    std::array<int, 2> ends{};
    socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data());
    const std::lock_guard lock(kernel->mutex);
    kernel->farEnds[ends[0]] = std::make_shared<platform_support::FileDescriptor>(ends[1]);
    ++kernel->opened;
    return platform_support::FileDescriptor(ends[0]);
}

bool SendMctpRequest(int socket, const Peer& to, std::uint8_t /*messageType*/,
                     std::span<const std::uint8_t> message) {
    return kernel->Send(socket, to, message);
}

std::optional<Arrival> ReceiveMctp(int socket, std::span<std::uint8_t> buffer) {
    Arrival arrival;
    std::array<iovec, 2> pieces{{{&arrival, sizeof(arrival)}, {buffer.data(), buffer.size()}}};
    msghdr message{};
    message.msg_iov = pieces.data();
    message.msg_iovlen = pieces.size();
    const ssize_t received = recvmsg(socket, &message, MSG_DONTWAIT);
    if (received < static_cast<ssize_t>(sizeof(arrival))) {
        return std::nullopt;
    }
    arrival.length = static_cast<std::size_t>(received) - sizeof(arrival);
    return arrival;
}

} // namespace mctplink
