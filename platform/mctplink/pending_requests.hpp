// SPDX-License-Identifier: Apache-2.0
/** The requests that have no response yet. */
#pragma once

#include "mctplink.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <thread>

namespace mctplink {

/** What the platform answers to a request. */
struct Outcome {
    std::uint32_t status = 0;
    std::uint32_t flags = 0;
    std::uint32_t errorType = 0;
    std::span<const std::uint8_t> response;
};

/** Holds each record from its sending to its completion, and decides who may touch it.
 *
 * A record is written under the lock, in the same step in which it leaves the table; its completion
 * function then runs without the lock. Whoever takes a record back waits for a completion that is
 * under way, so that afterwards neither a write nor a call can happen. That wait is why a caller
 * must hold no lock that a completion function takes. A completion function may itself take
 * records back: there is nothing to wait for but itself. */
class PendingRequests {
public:
    void Add(std::uint32_t tag, MctpLinkRequest& record);

    /** Takes back one request. */
    void Withdraw(std::uint32_t tag);

    /** Takes back all requests to an endpoint. */
    void Clear(std::uint8_t eid);

    /** Writes the outcome into the record and calls its completion function, unless the request
     *  has been taken back. A response longer than the record's capacity is cut. One thread
     *  completes at a time. */
    void Complete(std::uint32_t tag, const Outcome& outcome);

private:
    struct Request {
        MctpLinkRequest* record;
        std::uint8_t eid;
    };
    struct Running {
        std::uint32_t tag;
        std::uint8_t eid;
        std::thread::id thread;
    };

    std::mutex mutex;
    std::condition_variable completed;
    std::map<std::uint32_t, Request> requests;
    std::optional<Running> running;
};

} // namespace mctplink
