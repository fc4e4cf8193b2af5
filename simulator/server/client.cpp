// SPDX-License-Identifier: Apache-2.0
#include "server/client.hpp"

#include <array>
#include <cerrno>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <utility>

namespace simulator {

namespace {

bool WouldBlock() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

} // namespace

Client::Client(EventLoop& loop, simulator_link::FileDescriptor accepted,
               std::function<void(simulator_link::Frame)> received, std::function<void()> closed)
    : socket(std::move(accepted)), received(std::move(received)), closed(std::move(closed)),
      watch(loop.OnDescriptor(socket.Get(), EPOLLIN,
                              [this](std::uint32_t events) { Handle(events); })) {}

void Client::Send(const simulator_link::Frame& frame) {
    const auto bytes = simulator_link::EncodeFrame(frame);
    outgoing.insert(outgoing.end(), bytes.begin(), bytes.end());
    // A failure shows on the next event: whoever sends needn't expect to lose the client.
    WriteAll();
    watch.SetEvents(outgoing.empty() ? EPOLLIN : EPOLLIN | EPOLLOUT);
}

void Client::Handle(std::uint32_t events) {
    bool alive = true;
    if ((events & EPOLLOUT) != 0) {
        alive = WriteAll();
        watch.SetEvents(outgoing.empty() ? EPOLLIN : EPOLLIN | EPOLLOUT);
    }
    if (alive && (events & ~std::uint32_t{EPOLLOUT}) != 0) {
        alive = ReadAll();
    }
    if (!alive) {
        closed();
    }
}

bool Client::ReadAll() {
    std::array<std::uint8_t, 4096> piece{};
    const ssize_t count = recv(socket.Get(), piece.data(), piece.size(), MSG_DONTWAIT);
    if (count <= 0) {
        return count < 0 && WouldBlock();
    }
    assembler.Feed(std::span(piece).first(static_cast<std::size_t>(count)));
    while (auto frame = assembler.Next()) {
        received(std::move(*frame));
    }
    return !assembler.Broken();
}

bool Client::WriteAll() {
    while (!outgoing.empty()) {
        const ssize_t count =
            send(socket.Get(), outgoing.data(), outgoing.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0) {
            return WouldBlock();
        }
        outgoing.erase(outgoing.begin(), outgoing.begin() + count);
    }
    return true;
}

} // namespace simulator
