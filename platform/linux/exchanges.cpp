// SPDX-License-Identifier: Apache-2.0
#include "exchanges.hpp"

#include "log.hpp"

#include <sys/epoll.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace mctplink {

namespace {

/** The longest message that the kernel carries. */
constexpr std::size_t longestMessage = 65536;

/** How long the kernel keeps the tag of an unanswered request, and a little more. */
constexpr std::chrono::milliseconds tagLife{6500};

/** Stands for the watched descriptor where sockets have their serials, which begin at 1. */
constexpr std::uint64_t watched = 0;

} // namespace

bool Exchanges::Open() {
    readiness = platform_support::FileDescriptor(epoll_create1(EPOLL_CLOEXEC));
    buffer.resize(longestMessage);
    const std::lock_guard lock(mutex);
    const Serial serial = nextSerial++;
    if (!readiness.Valid() || OpenSocket(serial) == nullptr) {
        return false;
    }
    idle.push_back(serial);
    return true;
}

bool Exchanges::WaitFor(int descriptor, Serial serial) {
    epoll_event interest{};
    interest.events = EPOLLIN;
    interest.data.u64 = serial;
    return epoll_ctl(readiness.Get(), EPOLL_CTL_ADD, descriptor, &interest) == 0;
}

bool Exchanges::Watch(int descriptor) {
    return WaitFor(descriptor, watched);
}

void Exchanges::SetNetworks(std::map<std::uint8_t, std::uint32_t> networksByEid) {
    const std::lock_guard lock(mutex);
    networks = std::move(networksByEid);
}

Exchanges::Socket* Exchanges::OpenSocket(Serial serial) {
    Socket socket;
    socket.descriptor = OpenMctpSocket();
    if (!socket.descriptor.Valid() || !WaitFor(socket.descriptor.Get(), serial)) {
        return nullptr;
    }
    return &sockets.emplace(serial, std::move(socket)).first->second;
}

std::optional<Exchanges::Serial> Exchanges::TakeIdle() {
    if (idle.empty()) {
        const Serial serial = nextSerial++;
        return OpenSocket(serial) != nullptr ? std::optional(serial) : std::nullopt;
    }
    const Serial serial = idle.back();
    idle.pop_back();
    return serial;
}

void Exchanges::CloseWhatTheKernelLetGo() {
    // The clock is only read where a request was taken back: each sender comes here.
    std::erase_if(sockets, [](const auto& entry) {
        return entry.second.use == Use::TAKEN_BACK &&
               entry.second.takenBack < Clock::now() - tagLife;
    });
}

bool Exchanges::Send(MctpLinkRequest& record) {
    if (record.requestBytes == nullptr) {
        return false;
    }
    const std::lock_guard lock(mutex);
    CloseWhatTheKernelLetGo();
    const auto network = networks.find(record.eid);
    const auto serial = network != networks.end() ? TakeIdle() : std::nullopt;
    if (!serial) {
        return false;
    }
    Socket& socket = sockets.at(*serial);
    const Peer peer{.network = network->second, .eid = record.eid};
    if (!SendMctpRequest(socket.descriptor.Get(), peer, record.messageType,
                         std::span(record.requestBytes, record.requestLength))) {
        const std::string reason = std::strerror(errno);
        board::Log(board::LOG_STEP, "EID " + std::to_string(peer.eid) + " of network " +
                                        std::to_string(peer.network) +
                                        " can't be sent to: " + reason);
        sockets.erase(*serial);
        return false;
    }
    socket.use = Use::WAITING;
    socket.peer = peer;
    socket.messageType = record.messageType;
    socket.request = nextRequest++;
    pending.Add(socket.request, record);
    return true;
}

void Exchanges::Clear(std::uint8_t eid) {
    {
        const std::lock_guard lock(mutex);
        for (auto& [serial, socket] : sockets) {
            if (socket.use == Use::WAITING && socket.peer.eid == eid) {
                socket.use = Use::TAKEN_BACK;
                socket.takenBack = Clock::now();
            }
        }
    }
    pending.Clear(eid);
}

std::optional<std::uint32_t> Exchanges::Take(Serial serial, std::size_t& length) {
    const std::lock_guard lock(mutex);
    const auto found = sockets.find(serial);
    if (found == sockets.end()) {
        return std::nullopt;
    }
    Socket& socket = found->second;
    const auto arrival = ReceiveMctp(socket.descriptor.Get(), buffer);
    if (!arrival) {
        if (const int error = errno; error != EAGAIN && error != EINTR) {
            board::Log(board::LOG_WARNING, std::string("A socket fails: ") + std::strerror(error));
            std::erase(idle, serial);
            sockets.erase(found);
        }
        return std::nullopt;
    }
    if (socket.use == Use::IDLE || !arrival->answers || arrival->from != socket.peer ||
        arrival->messageType != socket.messageType) {
        return std::nullopt;
    }
    const bool wanted = socket.use == Use::WAITING;
    socket.use = Use::IDLE;
    idle.push_back(serial);
    length = arrival->length;
    return wanted ? std::optional(socket.request) : std::nullopt;
}

void Exchanges::Receive() {
    std::array<epoll_event, 16> ready{};
    for (bool called = false; !called && !stopped;) {
        const int count = epoll_wait(readiness.Get(), ready.data(), ready.size(), -1);
        for (int i = 0; i < count && !stopped; ++i) {
            const Serial serial = ready.at(static_cast<std::size_t>(i)).data.u64;
            std::size_t length = 0;
            if (serial == watched) {
                called = true;
            } else if (const auto request = Take(serial, length)) {
                pending.Complete(*request, {.response = std::span(buffer).first(length)});
            }
        }
    }
}

} // namespace mctplink
