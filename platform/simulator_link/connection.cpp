// SPDX-License-Identifier: Apache-2.0
#include "connection.hpp"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <utility>

namespace simulator_link {

namespace {

using Clock = std::chrono::steady_clock;

/** Waits until the socket can be read; false when the deadline has passed. */
bool WaitReadable(int socket, std::optional<Clock::time_point> deadline) {
    while (true) {
        int limit = -1;
        if (deadline) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
            limit = left > 0 ? static_cast<int>(left) : 0;
        }
        pollfd entry{socket, POLLIN, 0};
        const int ready = poll(&entry, 1, limit);
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}

} // namespace

std::string SocketPath() {
    const char* path = std::getenv("SIMULATOR_SOCKET");
    return path == nullptr ? "" : path;
}

std::optional<Connection> Connection::Open(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        return std::nullopt;
    }
    path.copy(address.sun_path, path.size());
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.Valid() ||
        connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        return std::nullopt;
    }
    return Connection(std::move(socket));
}

bool Connection::Send(const Frame& frame) const {
    const auto bytes = EncodeFrame(frame);
    std::span<const std::uint8_t> left(bytes);
    while (!left.empty()) {
        const ssize_t sent = send(socket.Get(), left.data(), left.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent <= 0) {
            return false;
        }
        left = left.subspan(static_cast<std::size_t>(sent));
    }
    return true;
}

std::optional<Frame> Connection::Receive(std::optional<std::chrono::milliseconds> limit) {
    std::optional<Clock::time_point> deadline;
    if (limit) {
        deadline = Clock::now() + *limit;
    }
    std::array<std::uint8_t, 4096> piece{};
    while (true) {
        if (auto frame = assembler.Next()) {
            return frame;
        }
        if (assembler.Broken() || !WaitReadable(socket.Get(), deadline)) {
            return std::nullopt;
        }
        const ssize_t received = recv(socket.Get(), piece.data(), piece.size(), 0);
        if (received < 0 && errno == EINTR) {
            continue;
        }
        if (received <= 0) {
            return std::nullopt;
        }
        assembler.Feed(std::span(piece).first(static_cast<std::size_t>(received)));
    }
}

void Connection::Shutdown() const {
    shutdown(socket.Get(), SHUT_RDWR);
}

std::optional<std::vector<std::uint8_t>> AskOnce(const Frame& question) {
    auto connection = Connection::Open(SocketPath());
    if (!connection || !connection->Send(question)) {
        return std::nullopt;
    }
    auto reply = connection->Receive(answerTimeout);
    if (!reply || reply->kind != FrameKind::Reply || reply->payload.empty() ||
        reply->payload.front() != 0) {
        return std::nullopt;
    }
    reply->payload.erase(reply->payload.begin());
    return std::move(reply->payload);
}

} // namespace simulator_link
