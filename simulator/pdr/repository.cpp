// SPDX-License-Identifier: Apache-2.0
#include "pdr/repository.hpp"

#include <algorithm>
#include <numeric>

namespace simulator {

namespace {

using simulator_link::PayloadWriter;

constexpr std::uint8_t headerVersion = 1;

Bytes WithHeader(std::uint32_t handle, const Pdr& pdr, std::uint16_t changeNumber) {
    return PayloadWriter()
        .Write(handle)
        .Write(headerVersion)
        .Write(static_cast<std::uint8_t>(pdr.type))
        .Write(changeNumber)
        .Write(static_cast<std::uint16_t>(pdr.body.size()))
        .Write(std::span<const std::uint8_t>(pdr.body))
        .Finish();
}

} // namespace

Repository::Repository(const TerminusDescription& terminus)
    : updated(std::chrono::sys_days(std::chrono::year(2026) / 1 / 1)) {
    Rebuild(terminus);
}

void Repository::Rebuild(const TerminusDescription& terminus) {
    Touch();
    const auto& traits = terminus.repository;
    records = traits.rawFirst;
    for (const auto& pdr : EncodeDescribed(terminus)) {
        const auto handle = static_cast<std::uint32_t>(records.size() + 1);
        records.push_back(WithHeader(handle, pdr, traits.changeNumber));
    }
    records.insert(records.end(), traits.rawLast.begin(), traits.rawLast.end());
}

std::size_t Repository::Size() const {
    return std::accumulate(
        records.begin(), records.end(), std::size_t{0},
        [](std::size_t sum, const Bytes& record) { return sum + record.size(); });
}

std::size_t Repository::Largest() const {
    const auto largest = std::ranges::max_element(records, {}, &Bytes::size);
    return largest == records.end() ? 0 : largest->size();
}

const Bytes* Repository::Find(std::uint32_t handle) const {
    const std::size_t index = handle == 0 ? 0 : handle - 1;
    return index < records.size() ? &records[index] : nullptr;
}

std::uint32_t Repository::Next(std::uint32_t handle) const {
    const std::uint32_t own = std::max<std::uint32_t>(handle, 1);
    return own < records.size() ? own + 1 : 0;
}

Bytes Repository::UpdateTime() const {
    namespace chrono = std::chrono;
    const auto day = chrono::floor<chrono::days>(updated);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss time(updated - day);
    constexpr std::uint8_t resolvedToMicroseconds = 0x00;
    return PayloadWriter()
        .WriteUnsigned(0, 2) // offset from UTC, minutes
        .WriteUnsigned(static_cast<std::uint64_t>(time.subseconds().count()), 3)
        .WriteUnsigned(static_cast<std::uint64_t>(time.seconds().count()), 1)
        .WriteUnsigned(static_cast<std::uint64_t>(time.minutes().count()), 1)
        .WriteUnsigned(static_cast<std::uint64_t>(time.hours().count()), 1)
        .WriteUnsigned(static_cast<unsigned>(date.day()), 1)
        .WriteUnsigned(static_cast<unsigned>(date.month()), 1)
        .WriteUnsigned(static_cast<std::uint64_t>(static_cast<int>(date.year())), 2)
        .Write(resolvedToMicroseconds)
        .Finish();
}

} // namespace simulator
