/** The kernel's MCTP, played: socket pairs in the place of its sockets. */
#pragma once

#include "kernel_sockets.hpp"
#include "pldm_cmds/bytes.hpp"

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace vantric::test {

/** A request that the kernel took. far is the end of its socket from which an answer comes. */
struct SentRequest {
    mctplink::Peer to;
    std::uint8_t messageType = 0;
    Bytes message;
    std::shared_ptr<platform_support::FileDescriptor> far;

    /** Lets a message arrive at the socket. */
    void Answer(const mctplink::Arrival& arrival, const Bytes& answer) const;

    /** Lets the response come. */
    void Answer(const Bytes& answer) const {
        Answer({.from = to, .messageType = messageType, .answers = true, .length = 0}, answer);
    }

    /** Whether the library has closed the socket. */
    bool Closed() const;
};

/** What the process's sockets do. Like the real one, it has eight tags for a peer, and a tag is
 * free again when its response has come or its socket is closed. */
class PlayedKernel {
public:
    static PlayedKernel& OfProcess();

    /** Forgets all. */
    void Reset();

    /** Waits for the next request and returns it. */
    SentRequest Take();

    platform_support::FileDescriptor Open();
    bool Send(int socket, const mctplink::Peer& to, std::uint8_t messageType, const Bytes& message);

    int refusal = 0; ///< the errno of every sending; set while nothing is sent
    bool answersItself =
        false; ///< answers each request at once with its own bytes; set while nothing is sent
    std::size_t opened = 0; ///< sockets so far

private:
    std::mutex mutex;
    std::map<int, std::shared_ptr<platform_support::FileDescriptor>> farEnds; // by socket
    std::vector<SentRequest> sent;
    std::vector<SentRequest> tagged; // those that hold a tag
    std::size_t taken = 0;
};

} // namespace vantric::test
