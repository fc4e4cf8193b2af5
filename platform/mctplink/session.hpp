/** One attachment to the MCTP service. */
#pragma once

#include "link.hpp"
#include "mctplink.h"
#include "pending_requests.hpp"
#include "worker.hpp"

namespace mctplink {

/** The attachment: a link to the bench and the two threads that call back.
 *
 * Tables and completions have a thread each: a table's callback may take seconds, and meanwhile the
 * requests that it waits for have to complete. */
class Session {
public:
    explicit Session(MctpLinkCallback callback);
    ~Session();

    /** Attaches; false if there is no bench or it declines. */
    bool Start(std::uint32_t linkType, std::uint32_t filter);

    /** Hands a request over; false if it isn't accepted, and then it is of no more interest here.
     */
    bool Send(MctpLinkRequest& record);

    /** Takes back all requests to an endpoint. */
    void Clear(std::uint8_t eid) { pending->Clear(eid); }

    /** Ends the attachment: nothing is called back afterwards. A callback may call it; it is then
     *  the last. */
    void Stop();

private:
    void Receive(const benchlink::Frame& frame);

    MctpLinkCallback callback;
    benchlink::Frame attach;
    std::shared_ptr<PendingRequests> pending; // shared with a completion that stops the session
    benchlink::Worker completions{"mctplink-done"};
    benchlink::Worker callbacks{"mctplink-table"};
    benchlink::Link link;
};

} // namespace mctplink
