// SPDX-License-Identifier: Apache-2.0
/** One attachment to the platform's MCTP. */
#pragma once

#include "mctplink.h"

#include <memory>

namespace mctplink {

/** The attachment: what the calls of mctplink.h do, on one kind of platform. */
class Session {
public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    virtual ~Session() = default;

    /** Attaches; false if the platform's MCTP can't be reached. */
    virtual bool Start(std::uint32_t linkType, std::uint32_t filter) = 0;

    /** Hands a request over; false if it isn't accepted, and then it is of no more interest here.
     */
    virtual bool Send(MctpLinkRequest& record) = 0;

    /** Takes back all requests to an endpoint, as MctpLinkClearRequest promises. */
    virtual void Clear(std::uint8_t eid) = 0;

    /** Ends the attachment: nothing is called back afterwards. A callback may call it; it is then
     *  the last. */
    virtual void Stop() = 0;
};

/** The session of the platform that this library is linked for. */
std::shared_ptr<Session> MakeSession(MctpLinkCallback callback);

} // namespace mctplink
