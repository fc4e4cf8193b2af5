// SPDX-License-Identifier: Apache-2.0
/** The attachment to the simulator. */
#pragma once

#include "link.hpp"
#include "pending_requests.hpp"
#include "session.hpp"
#include "worker.hpp"

namespace mctplink {

/** A link to the simulator and the two threads that call back.
 *
 * Tables and completions have a thread each: a table's callback may take seconds, and meanwhile the
 * requests that it waits for have to complete. */
class SimulatorSession final : public Session {
public:
    explicit SimulatorSession(MctpLinkCallback callback);
    ~SimulatorSession() override;

    bool Start(std::uint32_t linkType, std::uint32_t filter) override;
    bool Send(MctpLinkRequest& record) override;
    void Clear(std::uint8_t eid) override { pending->Clear(eid); }
    void Stop() override { End(); }

private:
    void End();
    void Receive(const simulator_link::Frame& frame);

    MctpLinkCallback callback;
    simulator_link::Frame attach;
    std::shared_ptr<PendingRequests> pending; // shared with a completion that stops the session
    platform_support::Worker completions{"mctplink-done"};
    platform_support::Worker callbacks{"mctplink-table"};
    simulator_link::Link link;
};

} // namespace mctplink
