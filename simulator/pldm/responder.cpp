// SPDX-License-Identifier: Apache-2.0
#include "pldm/command.hpp"
#include "pldm/fru_table.hpp"

#include <algorithm>

namespace simulator {

namespace {

constexpr std::size_t headerSize = 3;
constexpr std::uint8_t requestBit = 0x80;
constexpr std::uint8_t datagramBit = 0x40;
constexpr std::uint8_t instanceMask = 0x1F;
constexpr std::uint8_t typeMask = 0x3F;

Bytes Answer(Terminus& terminus, std::uint8_t type, std::uint8_t code,
             std::span<const std::uint8_t> data, Seconds now) {
    for (const auto& refusal : terminus.description.refusals) {
        if (refusal.type == type && refusal.command == code) {
            return Only(refusal.code);
        }
    }
    if (!terminus.description.types.contains(type)) {
        return Only(CompletionCode::InvalidType);
    }
    const auto supported = SupportedCommands(terminus, type);
    const auto commands = CommandsOf(type);
    const auto command = std::ranges::find(commands, code, &Command::code);
    if (command == commands.end() || std::ranges::find(supported, code) == supported.end()) {
        return Only(CompletionCode::UnsupportedCommand);
    }
    if (data.size() != command->dataLength) {
        return Only(CompletionCode::InvalidLength);
    }
    simulator_link::PayloadReader reader(data);
    return command->handler(terminus, reader, now);
}

} // namespace

Terminus::Terminus(TerminusDescription described)
    : description(std::move(described)), repository(description) {
    StartSensors();
    if (description.fru) {
        fruTable = EncodeFruTable(*description.fru);
    }
}

void Terminus::StartSensors() {
    for (const auto& sensor : description.numericSensors) {
        numericSensors.try_emplace(sensor.id, sensor, sensor.id);
    }
    for (const auto& sensor : description.stateSensors) {
        stateSensors.try_emplace(sensor.id, sensor);
    }
}

void Terminus::RebuildRepository() {
    repository.Rebuild(description);
}

std::span<const Command> CommandsOf(std::uint8_t type) {
    switch (type) {
    case 0:
        return BaseCommands();
    case 2:
        return PlatformCommands();
    case 4:
        return FruCommands();
    case 5:
        return FirmwareCommands();
    default:
        return {};
    }
}

std::vector<std::uint8_t> SupportedCommands(const Terminus& terminus, std::uint8_t type) {
    const auto support = terminus.description.types.find(type);
    if (support != terminus.description.types.end() && support->second.commands) {
        return *support->second.commands;
    }
    std::vector<std::uint8_t> codes;
    for (const auto& command : CommandsOf(type)) {
        codes.push_back(command.code);
    }
    return codes;
}

std::optional<Bytes> Respond(Terminus& terminus, std::span<const std::uint8_t> request,
                             Seconds now) {
    if (request.size() < headerSize || (request[0] & requestBit) == 0 ||
        (request[0] & datagramBit) != 0) {
        return std::nullopt;
    }
    const std::uint8_t type = request[1] & typeMask;
    const std::uint8_t code = request[2];
    Bytes response{static_cast<std::uint8_t>(request[0] & instanceMask), request[1], code};
    const auto answer = Answer(terminus, type, code, request.subspan(headerSize), now);
    response.insert(response.end(), answer.begin(), answer.end());
    return response;
}

} // namespace simulator
