// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"
#include "pdr/utf16.hpp"

namespace simulator {

using simulator_link::PayloadWriter;

namespace {

Bytes TextOf(const LocalName& name) {
    return name.encoded ? Bytes(name.text.begin(), name.text.end()) : ToUtf16BigEndian(name.text);
}

} // namespace

Pdr EncodeNames(std::uint16_t sensorId, const std::vector<std::vector<LocalName>>& members) {
    constexpr std::uint16_t endOfName = 0;
    constexpr std::uint8_t endOfTag = 0;
    PayloadWriter writer;
    writer.Write(terminusHandle)
        .Write(sensorId)
        .Write(static_cast<std::uint8_t>(members.size()))
        .Write(static_cast<std::uint8_t>(members.empty() ? 0 : members.front().size()));
    for (const auto& names : members) {
        for (const auto& name : names) {
            writer.Write(std::string_view(name.language))
                .Write(endOfTag)
                .Write(std::span<const std::uint8_t>(TextOf(name)))
                .Write(endOfName);
        }
    }
    return {PdrType::SensorAuxiliaryNames, writer.Finish()};
}

} // namespace simulator
