// SPDX-License-Identifier: Apache-2.0
/** One program that is connected to the simulator. */
#pragma once

#include "connection.hpp"
#include "server/event_loop.hpp"

#include <set>
#include <string>

namespace simulator {

/** A connection and what its other end asked for. Never blocks: what the other end doesn't take
 *  waits in memory. */
class Client {
public:
    /** received is called with each frame; closed when the other end has gone or talks nonsense,
     *  and it may destroy the client. */
    Client(EventLoop& loop, simulator_link::FileDescriptor socket,
           std::function<void(simulator_link::Frame)> received, std::function<void()> closed);

    void Send(const simulator_link::Frame& frame);

    bool attached = false;               /**< wants tables and discoveries */
    std::set<std::string> subscriptions; /**< notifications that it wants */

private:
    void Handle(std::uint32_t events);
    bool ReadAll();
    bool WriteAll();

    simulator_link::FileDescriptor socket;
    std::function<void(simulator_link::Frame)> received;
    std::function<void()> closed;
    simulator_link::FrameAssembler assembler;
    std::vector<std::uint8_t> outgoing;
    Watch watch;
};

} // namespace simulator
