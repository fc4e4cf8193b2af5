// SPDX-License-Identifier: Apache-2.0
/** Requests over the kernel's MCTP and their responses. */
#pragma once

#include "file_descriptor.hpp"
#include "kernel_sockets.hpp"
#include "pending_requests.hpp"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace mctplink {

/** Keeps a socket for each request that is under way.
 *
 * The kernel picks a request's tag, tells no sender which one, and delivers the response to the
 * socket that sent the request: so the socket is what a response is known by. One that was answered
 * serves again. One whose request was taken back keeps its tag from the next request until the late
 * answer has come, which ends here, or until the kernel has let the tag go; it is then closed,
 * since its message may still wait to be sent. So a socket's send buffer is empty whenever it
 * sends: a full one would make the kernel block, or fail with EAGAIN and leak. */
class Exchanges {
public:
    /** False, with the reason in errno, if the kernel has no MCTP. Comes before all else. */
    bool Open();

    /** Has Receive() return when this descriptor is readable. Comes before Receive(). */
    bool Watch(int descriptor);

    /** Says in which network each EID is. A request to another one is refused. Any thread. */
    void SetNetworks(std::map<std::uint8_t, std::uint32_t> networksByEid);

    /** Sends a request; false if it is refused. Any thread. */
    bool Send(MctpLinkRequest& record);

    /** Takes back all requests to an endpoint, as MctpLinkClearRequest promises. Any thread. */
    void Clear(std::uint8_t eid);

    /** Waits for messages, takes them and completes their requests until the watched descriptor is
     *  readable. One thread. */
    void Receive();

    /** Nothing is completed from now on, except what is just being completed. Any thread. */
    void Stop() { stopped = true; }

private:
    using Clock = std::chrono::steady_clock;
    using Serial = std::uint64_t;

    enum class Use { IDLE, WAITING, TAKEN_BACK };

    struct Socket {
        platform_support::FileDescriptor descriptor;
        Use use = Use::IDLE;
        Peer peer;
        std::uint8_t messageType = 0;
        std::uint32_t request = 0; // its number in pending
        Clock::time_point takenBack;
    };

    bool WaitFor(int descriptor, Serial serial);

    // With mutex held.
    Socket* OpenSocket(Serial serial);
    void CloseWhatTheKernelLetGo();
    std::optional<Serial> TakeIdle();

    /** Takes one message; returns the number of the request that it answers. */
    std::optional<std::uint32_t> Take(Serial serial, std::size_t& length);

    PendingRequests pending;
    platform_support::FileDescriptor readiness; // of all sockets and the watched descriptor
    std::vector<std::uint8_t> buffer;           // of the thread that receives
    std::atomic<bool> stopped = false;

    std::mutex mutex; // guards what follows; never held while pending waits or completes
    std::map<std::uint8_t, std::uint32_t> networks;
    std::map<Serial, Socket> sockets;
    std::vector<Serial> idle;
    Serial nextSerial = 1;
    std::uint32_t nextRequest = 1;
};

} // namespace mctplink
