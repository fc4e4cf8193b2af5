#include "platform/played_kernel.hpp"

#include "support/eventually.hpp"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <stdexcept>

namespace vantric::test {

void SentRequest::Answer(const mctplink::Arrival& arrival, const Bytes& answer) const {
    auto head = arrival;
    auto body = answer;
    std::array<iovec, 2> pieces{{{&head, sizeof(head)}, {body.data(), body.size()}}};
    msghdr message{};
    message.msg_iov = pieces.data();
    message.msg_iovlen = pieces.size();
    sendmsg(far->Get(), &message, MSG_NOSIGNAL); // a closed socket misses it, as in the kernel
}

bool SentRequest::Closed() const {
    pollfd entry{far->Get(), 0, 0};
    return poll(&entry, 1, 0) == 1 && (entry.revents & POLLHUP) != 0;
}

PlayedKernel& PlayedKernel::OfProcess() {
    static PlayedKernel kernel;
    return kernel;
}

void PlayedKernel::Reset() {
    const std::lock_guard lock(mutex);
    refusal = 0;
    answersItself = false;
    opened = 0;
    taken = 0;
    sent.clear();
    tagged.clear();
    farEnds.clear();
}

SentRequest PlayedKernel::Take() {
    const bool there = Eventually([this] {
        const std::lock_guard lock(mutex);
        return sent.size() > taken;
    });
    if (!there) {
        throw std::runtime_error("no request");
    }
    const std::lock_guard lock(mutex);
    return sent[taken++];
}

platform_support::FileDescriptor PlayedKernel::Open() {
    std::array<int, 2> ends{};
    socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data());
    const std::lock_guard lock(mutex);
    farEnds[ends[0]] = std::make_shared<platform_support::FileDescriptor>(ends[1]);
    ++opened;
    return platform_support::FileDescriptor(ends[0]);
}

bool PlayedKernel::Send(int socket, const mctplink::Peer& to, std::uint8_t messageType,
                        const Bytes& message) {
    constexpr int tags = 8;
    const std::lock_guard lock(mutex);
    // A socket that sends again has had its answer.
    std::erase_if(tagged, [&](const SentRequest& request) {
        return request.Closed() || request.far == farEnds[socket];
    });
    errno = std::ranges::count(tagged, to, &SentRequest::to) == tags ? EBUSY : refusal;
    if (errno != 0) {
        return false;
    }
    const SentRequest request{to, messageType, message, farEnds[socket]};
    tagged.push_back(request);
    sent.push_back(request);
    if (answersItself) {
        request.Answer(message);
    }
    return true;
}

} // namespace vantric::test

namespace mctplink {

using vantric::test::PlayedKernel;

platform_support::FileDescriptor OpenMctpSocket() {
    return PlayedKernel::OfProcess().Open();
}

bool SendMctpRequest(int socket, const Peer& to, std::uint8_t messageType,
                     std::span<const std::uint8_t> message) {
    return PlayedKernel::OfProcess().Send(socket, to, messageType,
                                          Bytes(message.begin(), message.end()));
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
