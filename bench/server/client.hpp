/** One program that is connected to the bench. */
#pragma once

#include "connection.hpp"
#include "server/event_loop.hpp"

#include <set>
#include <string>

namespace bench {

/** A connection and what its other end asked for. Never blocks: what the other end doesn't take
 *  waits in memory. */
class Client {
public:
    /** received is called with each frame; closed when the other end has gone or talks nonsense,
     *  and it may destroy the client. */
    Client(EventLoop& loop, benchlink::FileDescriptor socket,
           std::function<void(benchlink::Frame)> received, std::function<void()> closed);

    void Send(const benchlink::Frame& frame);

    bool attached = false;               /**< wants tables and discoveries */
    std::set<std::string> subscriptions; /**< notifications that it wants */

private:
    void Handle(std::uint32_t events);
    bool ReadAll();
    bool WriteAll();

    benchlink::FileDescriptor socket;
    std::function<void(benchlink::Frame)> received;
    std::function<void()> closed;
    benchlink::FrameAssembler assembler;
    std::vector<std::uint8_t> outgoing;
    Watch watch;
};

} // namespace bench
