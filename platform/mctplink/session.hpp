/** One attachment to the MCTP service. */
#pragma once

#include "link.hpp"
#include "mctplink.h"
#include "pending_requests.hpp"
#include "worker.hpp"

namespace mctplink {

/** The attachment: a link to the simulator and the two threads that call back.
 *
 * Tables and completions have a thread each: a table's callback may take seconds, and meanwhile the
 * requests that it waits for have to complete. */
class Session {
public:
    explicit Session(MctpLinkCallback callback);
    ~Session();

    /** Attaches; false if there is no simulator or it declines. */
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
    void Receive(const simulator_link::Frame& frame);

    MctpLinkCallback callback;
    simulator_link::Frame attach;
    std::shared_ptr<PendingRequests> pending; // shared with a completion that stops the session
    simulator_link::Worker completions{"mctplink-done"};
    simulator_link::Worker callbacks{"mctplink-table"};
    simulator_link::Link link;
};

} // namespace mctplink
