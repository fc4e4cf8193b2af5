// SPDX-License-Identifier: Apache-2.0
#include "baseline/poller.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace measured_baseline {

namespace {

constexpr std::uint8_t requestBit = 0x80;
constexpr std::uint8_t instanceIdCount = 32;
constexpr std::uint8_t platformType = 2;
constexpr std::uint8_t getSensorReading = 0x11;
constexpr std::uint8_t noRearm = 0;
constexpr std::size_t capacity = 23;
constexpr std::size_t codeAt = 3;
constexpr std::size_t readingAt = 10;
constexpr std::size_t responseLength = 12; // with a reading of 16 bits
constexpr std::time_t rest = 5;            // seconds

/** A baseline that loses an answer has measured nothing. */
[[noreturn]] void Fail(const char* what, unsigned eid, unsigned sensor) {
    std::fprintf(stderr, "baseline: %s, EID %u, sensor %u\n", what, eid, sensor);
    std::_Exit(1);
}

} // namespace

Poller::Poller(std::uint8_t eid, const std::vector<Object*>& objects, Taker taker)
    : eid(eid), taker(std::move(taker)), exchange(eid) {
    for (auto* const object : objects) {
        sensors.push_back({object, std::numeric_limits<std::int32_t>::max()});
    }
}

void Poller::Start() {
    std::thread([this] { Run(); }).detach();
}

void Poller::Run() {
    while (true) {
        std::vector<Change> changes;
        for (auto& [object, before] : sensors) {
            const std::int32_t reading = Read(object->sensor);
            if (reading != before) {
                before = reading;
                changes.push_back({object, reading});
            }
        }
        taker(std::move(changes));
        const timespec pause{.tv_sec = rest, .tv_nsec = 0};
        nanosleep(&pause, nullptr);
    }
}

std::int32_t Poller::Read(std::uint16_t sensor) {
    instanceId = static_cast<std::uint8_t>((instanceId + 1) % instanceIdCount);
    const std::array<std::uint8_t, 6> request{static_cast<std::uint8_t>(requestBit | instanceId),
                                              platformType,
                                              getSensorReading,
                                              static_cast<std::uint8_t>(sensor & 0xFF),
                                              static_cast<std::uint8_t>(sensor >> 8),
                                              noRearm};
    std::array<std::uint8_t, capacity> response{};
    const std::size_t length = exchange.Ask(request, response);
    if (length == 0) {
        Fail("no answer", eid, sensor);
    }
    if (length != responseLength || response[codeAt] != 0) {
        Fail("an answer that is no reading of 16 bits", eid, sensor);
    }
    return static_cast<std::int16_t>(response[readingAt] | response[readingAt + 1] << 8);
}

} // namespace measured_baseline
