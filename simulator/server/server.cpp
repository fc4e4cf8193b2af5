// SPDX-License-Identifier: Apache-2.0
#include "server/server.hpp"

#include <stdexcept>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace simulator {

namespace {

using simulator_link::Frame;
using simulator_link::FrameKind;
using simulator_link::PayloadReader;
using simulator_link::PayloadWriter;

constexpr std::uint8_t succeeded = 0;
constexpr std::uint8_t failed = 1;
constexpr std::uint32_t servedLinkType = 3;
constexpr std::uint8_t pldmMessageType = 1;

Frame ReplyTo(const Frame& question, std::uint8_t result, std::span<const std::uint8_t> rest = {}) {
    return {FrameKind::Reply, question.tag, PayloadWriter().Write(result).Write(rest).Finish()};
}

} // namespace

ListeningSocket::ListeningSocket(const std::string& path)
    : path(path), socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("SIMULATOR_SOCKET must name a path of at most 107 characters");
    }
    if (simulator_link::Connection::Open(path)) {
        throw std::runtime_error("a simulator listens at " + path + " already");
    }
    unlink(path.c_str());
    path.copy(address.sun_path, path.size());
    if (bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(socket.Get(), SOMAXCONN) != 0) {
        throw std::runtime_error("can't listen at \"" + path +
                                 "\"; set SIMULATOR_SOCKET to a path that can be made");
    }
}

ListeningSocket::~ListeningSocket() {
    unlink(path.c_str());
}

Server::Server(EventLoop& loop, Machine& machine, const std::string& path)
    : loop(loop), machine(machine), listening(path),
      watch(loop.OnDescriptor(listening.Get(), EPOLLIN, [this](std::uint32_t) { Accept(); })) {}

Seconds Server::Now() const {
    return std::chrono::steady_clock::now() - start;
}

void Server::Accept() {
    simulator_link::FileDescriptor socket(
        accept4(listening.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket.Valid()) {
        return;
    }
    const auto self = std::make_shared<std::weak_ptr<Client>>();
    auto client = std::make_shared<Client>(
        loop, std::move(socket), [this, self](const Frame& frame) { Receive(self->lock(), frame); },
        [this, self] {
            // The client runs this, and must live until it has returned.
            const auto alive = self->lock();
            clients.erase(alive);
            loop.After(std::chrono::milliseconds(0), [alive] {});
        });
    *self = client;
    clients.insert(std::move(client));
}

void Server::Receive(const ClientPointer& client, const Frame& frame) {
    switch (frame.kind) {
    case FrameKind::Attach:
        HandleAttach(*client, frame);
        break;
    case FrameKind::Request:
        HandleRequest(client, frame);
        break;
    case FrameKind::CatalogInfo: {
        const auto info = PayloadWriter()
                              .Write(CatalogGroups(machine))
                              .Write(CatalogCapacity(machine))
                              .Write(std::uint32_t{0})
                              .Finish();
        client->Send(ReplyTo(frame, succeeded, info));
        break;
    }
    case FrameKind::CatalogData: {
        PayloadReader reader(frame.payload);
        reader.Read<std::uint32_t>();
        const auto group = reader.Read<std::uint32_t>();
        client->Send(ReplyTo(frame, group < CatalogGroups(machine) ? succeeded : failed,
                             EncodeCatalogGroup(machine, group)));
        break;
    }
    case FrameKind::CatalogAll:
        client->Send(ReplyTo(frame, succeeded, EncodeAccelerators(machine)));
        break;
    case FrameKind::Subscribe:
        client->subscriptions.insert(PayloadReader(frame.payload).RestAsText());
        client->Send(ReplyTo(frame, succeeded));
        break;
    case FrameKind::Control:
        HandleControl(client, frame);
        break;
    default:
        client->Send(ReplyTo(frame, failed));
        break;
    }
}

void Server::HandleAttach(Client& client, const Frame& frame) {
    if (PayloadReader(frame.payload).Read<std::uint32_t>() != servedLinkType) {
        client.Send(ReplyTo(frame, failed));
        return;
    }
    client.attached = true;
    client.Send(ReplyTo(frame, succeeded));
    client.Send({FrameKind::Table, 0, EncodeTableDelivery(machine, TableFlaw::None)});
}

void Server::HandleRequest(const ClientPointer& client, const Frame& frame) {
    PayloadReader reader(frame.payload);
    const auto eid = reader.Read<std::uint8_t>();
    const auto messageType = reader.Read<std::uint8_t>();
    auto* const endPoint = machine.FindEndPoint(eid);
    if (endPoint == nullptr || endPoint->faults.refusing || messageType != pldmMessageType) {
        client->Send(ReplyTo(frame, failed));
        return;
    }
    client->Send(ReplyTo(frame, succeeded));
    auto counted = Ask(*endPoint, reader.Rest());
    if (!counted) {
        return;
    }
    const std::uint32_t status = 0;
    const std::uint32_t flags = 0;
    Frame answer{FrameKind::Response, frame.tag,
                 PayloadWriter()
                     .Write(status)
                     .Write(flags)
                     .Write(endPoint->faults.errorType)
                     .Write(std::span<const std::uint8_t>(counted->bytes))
                     .Finish()};
    const auto deliver = [answer = std::move(answer), sent = std::move(counted->sent),
                          target = std::weak_ptr(client)] {
        sent();
        if (const auto alive = target.lock()) {
            alive->Send(answer);
        }
    };
    if (endPoint->faults.delay.count() == 0) {
        deliver();
    } else {
        loop.After(endPoint->faults.delay, deliver);
    }
}

std::optional<CountedAnswer> Server::Ask(LiveEndPoint& endPoint,
                                         std::span<const std::uint8_t> request) {
    auto response = endPoint.Answer(request, Now());
    if (!response) {
        return std::nullopt;
    }
    const auto eid = static_cast<std::uint8_t>(endPoint.description.eid);
    return CountedAnswer{
        .bytes = *response,
        .sent = [this, &endPoint,
                 line = trace != nullptr ? Trace::Line(eid, request, *response) : ""] {
            ++endPoint.answered;
            if (trace != nullptr) {
                trace->Write(line);
            }
            control->RequestAnswered();
        }};
}

void Server::HandleControl(const ClientPointer& client, const Frame& frame) {
    const std::string text = PayloadReader(frame.payload).RestAsText();
    const auto reply = [target = std::weak_ptr(client),
                        question = Frame{frame.kind, frame.tag, {}}](bool ok,
                                                                     const std::string& told) {
        if (const auto alive = target.lock()) {
            const std::span bytes(reinterpret_cast<const std::uint8_t*>(told.data()), told.size());
            alive->Send(ReplyTo(question, ok ? succeeded : failed, bytes));
        }
    };
    control->Run(text, reply);
}

std::size_t Server::SendToAttached(const Frame& frame) {
    std::size_t reached = 0;
    for (const auto& client : clients) {
        if (client->attached) {
            client->Send(frame);
            ++reached;
        }
    }
    return reached;
}

std::size_t Server::DeliverTable(TableFlaw flaw) {
    return SendToAttached({FrameKind::Table, 0, EncodeTableDelivery(machine, flaw)});
}

std::size_t Server::AnnounceDiscovery() {
    return SendToAttached({FrameKind::Discovery, 0, {}});
}

std::size_t Server::Notify(const std::string& name, bool everybody) {
    const Frame frame{FrameKind::Notification, 0,
                      PayloadWriter().Write(std::string_view(name)).Finish()};
    std::size_t reached = 0;
    for (const auto& client : clients) {
        const auto& subscribed = client->subscriptions;
        if (everybody ? !subscribed.empty() : subscribed.contains(name)) {
            client->Send(frame);
            ++reached;
        }
    }
    return reached;
}

} // namespace simulator
