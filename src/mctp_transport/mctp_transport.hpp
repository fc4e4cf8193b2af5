// SPDX-License-Identifier: Apache-2.0
/** Blocking exchange over the asynchronous MCTP client library. */
#pragma once

#include "device_transport/device_transport.hpp"

#include <mctplink.h>

#include <condition_variable>
#include <mutex>

namespace vantric {

/** Sends a request up to 10 times and waits 5 s for each answer (DSP0240 retries).
 *
 * At most one request is in flight. A change of endpoint replaces the whole object. */
class MCTPTransport : public DeviceTransport {
public:
    using DeviceTransport::DeviceTransport;

    /** Clears what the library still holds for the endpoint. */
    ~MCTPTransport() override;

    /** Monitor thread, with the device's mutex held; blocks up to 50 s. Gives up early when the
     *  host goes off, and when an attempt times out while a new endpoint table waits.
     *  Returns 0, or 3, 4, 8 or 9 of VantricStatus. */
    VantricStatus SendPacket(TransportPacket& packet) override;

    /** Wakes the sender; called by the library's completion function on a thread of the library.
     *  A record of another endpoint is ignored. */
    void MCTPRespCB(const MctpLinkRequest* request);

private:
    /** What became of one attempt. */
    enum class Attempt { ANSWERED, FAILED, TIMED_OUT };

    Attempt WaitForResponse(TransportPacket& packet, const MctpLinkRequest& record);
    void TakeResponse(TransportPacket& packet, const MctpLinkRequest& record) const;

    std::mutex responseMutex;
    std::condition_variable responseCond;
    bool responded = false; ///< set by MCTPRespCB, cleared before each attempt; responseMutex
};

} // namespace vantric
