// SPDX-License-Identifier: Apache-2.0
/** The cards in the machine. */
#pragma once

#include "machine/faults.hpp"
#include "pldm/terminus.hpp"
#include "scenario/scenario.hpp"

#include <functional>

namespace simulator {

/** An endpoint that is spoken to. */
struct LiveEndPoint {
    EndPoint description; /**< its EID may change */
    Terminus terminus;
    Faults faults;
    std::uint64_t answered = 0; /**< requests answered so far */

    /** The response to a request, spoiled as the faults say. Empty if none comes. */
    std::optional<Bytes> Answer(std::span<const std::uint8_t> request, Seconds now);
};

struct LiveCard {
    Card description; /**< without its endpoints */
    std::vector<LiveEndPoint> endPoints;
    bool plugged = true;
};

/** A response that is to go out, and what is to be done then. */
struct CountedAnswer {
    Bytes bytes;
    std::function<void()> sent;
};

/** All cards of a scenario, plugged or not. */
class Machine {
public:
    explicit Machine(const Scenario& scenario);

    /** The endpoint of a plugged card with this EID, or null. */
    LiveEndPoint* FindEndPoint(std::uint16_t eid);
    /** The cards of a slot. */
    std::vector<LiveCard*> FindCards(std::uint16_t slot);

    std::vector<LiveCard>& Cards() { return cards; }
    const std::vector<LiveCard>& Cards() const { return cards; }

    /** Entries of the accelerator table. */
    const std::vector<Bytes>& Accelerators() const { return accelerators; }

private:
    std::vector<LiveCard> cards;
    std::vector<Bytes> accelerators;
};

} // namespace simulator
