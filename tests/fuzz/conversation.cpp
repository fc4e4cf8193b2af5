// SPDX-License-Identifier: Apache-2.0
#include "conversation.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

/** Takes the next message from the front of the input. */
Bytes TakeMessage(std::span<const std::uint8_t>& input) {
    const std::size_t low = input.empty() ? 0U : input[0];
    const std::size_t high = input.size() < 2 ? 0U : input[1];
    input = input.subspan(std::min<std::size_t>(2, input.size()));
    const auto message = input.first(std::min(low | high << 8, input.size()));
    input = input.subspan(message.size());
    return {message.begin(), message.end()};
}

} // namespace

void TalkTo(ScriptedEndpoint& endpoint) {
    auto& cmds = endpoint.cmds;
    cmds.GetPLDMTypes();
    endpoint.Supports(2, {0xF1F1F000, 0xF1F2F000}); // so that an early mistake doesn't end it all
    cmds.GetFWParameters();
    if (cmds.GetFRUMetaData() == 0) {
        cmds.GetFRUContents();
    }
    cmds.GetPLDMVersions(255);
    cmds.GetSupportedCmds(255);
    cmds.SelectPLDMVersions();
    cmds.GetTID();
    cmds.GetPDRRepositoryInfo(1);
    cmds.SetNumericeSensorEnable();
    for (int cycle = 0; cycle < 2; ++cycle) {
        vantric::ReadingMap readings;
        vantric::StateChangeMap changes;
        cmds.GetAllSensorReading(readings);
        cmds.GetStateSensorReading(changes);
        cmds.GetPDRRepositoryInfo(0);
    }
    cmds.GetExtractedData();
}

void TalkToInput(std::span<const std::uint8_t> input) {
    ScriptedEndpoint endpoint;
    endpoint.transport.respond = [&input](const Bytes&) {
        return input.empty() ? NoAnswer(3) : Answer{.status = 0, .bytes = TakeMessage(input)};
    };
    TalkTo(endpoint);
    for (const auto& sensor : endpoint.Data().numericSensors) {
        // Throws where the text isn't UTF-8; a compact sensor's name is fitted only when published.
        if (!sensor->auxLanguageTag.empty()) {
            static_cast<void>(nlohmann::json(sensor->auxSensorName).dump());
        }
    }
}
