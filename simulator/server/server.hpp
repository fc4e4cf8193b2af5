// SPDX-License-Identifier: Apache-2.0
/** The simulator's socket. */
#pragma once

#include "control/control.hpp"
#include "server/audience.hpp"
#include "server/client.hpp"
#include "server/trace.hpp"

namespace simulator {

/** A Unix socket that listens; its path goes with it. */
class ListeningSocket {
public:
    /** Replaces a socket without a listener. Throws std::runtime_error. */
    explicit ListeningSocket(const std::string& path);
    ListeningSocket(const ListeningSocket&) = delete;
    ListeningSocket& operator=(const ListeningSocket&) = delete;
    ~ListeningSocket();

    int Get() const { return socket.Get(); }

private:
    std::string path;
    simulator_link::FileDescriptor socket;
};

/** Serves the platform libraries and simctl. */
class Server : public Audience {
public:
    Server(EventLoop& loop, Machine& machine, const std::string& path);

    std::size_t DeliverTable(TableFlaw flaw) override;
    std::size_t AnnounceDiscovery() override;
    std::size_t Notify(const std::string& name, bool everybody) override;

    /** The answer of an endpoint to a PLDM request; nothing if none comes. */
    std::optional<CountedAnswer> Ask(LiveEndPoint& endPoint, std::span<const std::uint8_t> request);

    /** Who carries out simctl's commands; set before the loop runs. */
    void SetControl(Control& commands) { control = &commands; }

    /** Keeps a trace of all answers; set before the loop runs, if at all. */
    void SetTrace(Trace& kept) { trace = &kept; }

private:
    using ClientPointer = std::shared_ptr<Client>;

    void Accept();
    void Receive(const ClientPointer& client, const simulator_link::Frame& frame);
    void HandleAttach(Client& client, const simulator_link::Frame& frame);
    void HandleRequest(const ClientPointer& client, const simulator_link::Frame& frame);
    void HandleControl(const ClientPointer& client, const simulator_link::Frame& frame);
    std::size_t SendToAttached(const simulator_link::Frame& frame);
    Seconds Now() const;

    EventLoop& loop;
    Machine& machine;
    Control* control = nullptr;
    Trace* trace = nullptr;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    ListeningSocket listening;
    std::set<ClientPointer> clients;
    Watch watch;
};

} // namespace simulator
