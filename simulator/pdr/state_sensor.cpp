// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"

#include <algorithm>

namespace simulator {

using simulator_link::PayloadWriter;

void WriteStates(PayloadWriter& writer, const std::vector<std::uint8_t>& states) {
    const auto highest = std::ranges::max_element(states);
    Bytes field(highest == states.end() ? 0 : *highest / 8 + 1);
    for (const auto state : states) {
        field[state / 8] |= static_cast<std::uint8_t>(1U << (state % 8));
    }
    writer.Write(static_cast<std::uint8_t>(field.size()))
        .Write(std::span<const std::uint8_t>(field));
}

Pdr EncodeStateSensor(const StateSensor& sensor) {
    const bool named = !sensor.members.empty() && !sensor.members.front().names.empty();
    PayloadWriter writer;
    writer.Write(terminusHandle).Write(sensor.id);
    WriteEntity(writer, sensor.entity);
    writer.Write(sensor.init)
        .Write(static_cast<std::uint8_t>(named ? 1 : 0))
        .Write(static_cast<std::uint8_t>(sensor.members.size()));
    for (const auto& member : sensor.members) {
        writer.Write(member.stateSet);
        WriteStates(writer, member.possibleStates);
    }
    return {PdrType::StateSensor, writer.Finish()};
}

} // namespace simulator
