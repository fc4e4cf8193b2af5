// SPDX-License-Identifier: Apache-2.0
#include "machine/machine.hpp"

namespace simulator {

std::optional<Bytes> LiveEndPoint::Answer(std::span<const std::uint8_t> request, Seconds now) {
    if (faults.silent) {
        return std::nullopt;
    }
    auto response = Respond(terminus, request, now);
    return response ? std::optional(Spoil(faults, request, std::move(*response))) : std::nullopt;
}

Machine::Machine(const Scenario& scenario) : accelerators(scenario.accelerators) {
    for (const auto& card : scenario.cards) {
        LiveCard live;
        live.description = card;
        live.description.endPoints.clear();
        live.plugged = card.plugged;
        for (const auto& endPoint : card.endPoints) {
            live.endPoints.push_back({endPoint, Terminus(endPoint.terminus), {}, 0});
        }
        cards.push_back(std::move(live));
    }
}

LiveEndPoint* Machine::FindEndPoint(std::uint16_t eid) {
    for (auto& card : cards) {
        for (auto& endPoint : card.endPoints) {
            if (card.plugged && endPoint.description.eid == eid) {
                return &endPoint;
            }
        }
    }
    return nullptr;
}

std::vector<LiveCard*> Machine::FindCards(std::uint16_t slot) {
    std::vector<LiveCard*> found;
    for (auto& card : cards) {
        if (card.description.slot == slot) {
            found.push_back(&card);
        }
    }
    return found;
}

} // namespace simulator
