// SPDX-License-Identifier: Apache-2.0
#include "serial/front.hpp"

#include <utility>

namespace simulator {

namespace {

/** One for each endpoint, the same in each run; its end is the EID of the scenario. */
std::array<std::uint8_t, 16> UuidOf(std::uint16_t eid) {
    std::array<std::uint8_t, 16> uuid{0x5F, 0x2C, 0x1A, 0x0E, 0x93, 0xD4, 0x4B, 0x61, 0x8A, 0x7E};
    uuid[14] = static_cast<std::uint8_t>(eid >> 8);
    uuid[15] = static_cast<std::uint8_t>(eid);
    return uuid;
}

} // namespace

SerialFront::SerialFront(EventLoop& loop, Machine& machine, std::filesystem::path folder, Ask ask)
    : loop(loop), machine(machine), folder(std::move(folder)), ask(std::move(ask)) {
    std::filesystem::create_directories(this->folder);
    for (auto& card : machine.Cards()) {
        for (auto& endPoint : card.endPoints) {
            places.emplace(&endPoint, Place{std::to_string(endPoint.description.eid),
                                            UuidOf(endPoint.description.eid)});
        }
    }
    Follow();
}

void SerialFront::Follow() {
    for (auto& card : machine.Cards()) {
        for (auto& endPoint : card.endPoints) {
            if (!card.plugged) {
                lines.erase(&endPoint);
            } else if (!lines.contains(&endPoint)) {
                const auto& place = places.at(&endPoint);
                lines.emplace(&endPoint, std::make_unique<SerialLine>(
                                             loop, folder / place.name, endPoint, place.uuid,
                                             [this, &endPoint](auto request) {
                                                 return ask(endPoint, request);
                                             }));
            }
        }
    }
}

} // namespace simulator
