// SPDX-License-Identifier: Apache-2.0
/** A way to end an event loop from another thread. */
#pragma once

#include <systemd/sd-event.h>

#include <memory>

namespace vantric {

/** Ends one loop on demand. The loop itself belongs to its thread; this reaches it through an
 *  eventfd. */
class LoopExit {
public:
    /** Watches for the demand on the loop, whose thread calls this.
     *  @throws std::system_error */
    explicit LoopExit(sd_event* loop);
    ~LoopExit();
    LoopExit(const LoopExit&) = delete;
    LoopExit& operator=(const LoopExit&) = delete;

    /** Makes the loop end with EXIT_FAILURE, also one that hasn't begun yet. Any thread. */
    void Demand() noexcept;

private:
    static int OnDemand(sd_event_source* source, int fd, uint32_t events, void* loop);

    struct SourceRelease {
        void operator()(sd_event_source* source) const noexcept;
    };
    int demand;
    std::unique_ptr<sd_event_source, SourceRelease> source;
};

} // namespace vantric
