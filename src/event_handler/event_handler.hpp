// SPDX-License-Identifier: Apache-2.0
/** What happens outside, on its way to those who act on it. */
#pragma once

#include <any>
#include <cstdint>

namespace vantric {

/** Kinds of events. */
enum EventKind : std::uint32_t {
    END_POINT_TABLE_UPDATED = 2, ///< payload: const MctpLinkEndPointResp*, valid during the call
    FW_UPDATE_START = 5,         ///< payload: std::string, of no meaning
    FW_UPDATE_END = 6,           ///< payload: std::string, of no meaning
};

/** What acts on events. */
class EventHandler {
public:
    EventHandler() = default;
    virtual ~EventHandler() = default;
    EventHandler(const EventHandler&) = delete;
    EventHandler& operator=(const EventHandler&) = delete;

    /** Acts on one event, on the thread of whichever library reported it. */
    virtual void Update(EventKind kind, const std::any& payload) = 0;
};

/** Adds an observer for the life of the process. Called before the first event can come. */
void RegisterObserver(EventHandler& observer);

/** Subscribes to the platform's notifications of a firmware update's start and end; called once, on
 *  "PLDM_DevMgr". A failure leaves the process without them. They reach the observers on a thread
 *  of the notification library. */
void SubscribeToEvents();

/** Tells every observer, in the order of their registration, on the calling thread. */
void NotifyObservers(EventKind kind, const std::any& payload);

} // namespace vantric
