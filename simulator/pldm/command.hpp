// SPDX-License-Identifier: Apache-2.0
/** Commands that a terminus knows. */
#pragma once

#include "pldm/terminus.hpp"

namespace simulator {

/** Completion codes of all types (DSP0240). */
enum class CompletionCode : std::uint8_t {
    Success = 0x00,
    Error = 0x01,
    InvalidData = 0x02,
    InvalidLength = 0x03,
    NotReady = 0x04,
    UnsupportedCommand = 0x05,
    InvalidType = 0x20,
};

/** An answer of a completion code alone. */
inline Bytes Only(CompletionCode code) {
    return {static_cast<std::uint8_t>(code)};
}
inline Bytes Only(std::uint8_t code) {
    return {code};
}

/** A writer that begins an answer with success. */
inline simulator_link::PayloadWriter Success() {
    simulator_link::PayloadWriter writer;
    writer.Write(static_cast<std::uint8_t>(CompletionCode::Success));
    return writer;
}

/** One command. The handler gets the request data, of the right length, and returns the answer
 *  from the completion code on. */
struct Command {
    std::uint8_t code;
    std::size_t dataLength;
    Bytes (*handler)(Terminus& terminus, simulator_link::PayloadReader& data, Seconds now);
};

std::span<const Command> BaseCommands();
std::span<const Command> PlatformCommands();
std::span<const Command> FruCommands();
std::span<const Command> FirmwareCommands();

/** The commands of a PLDM type; none for a type that the simulator doesn't know. */
std::span<const Command> CommandsOf(std::uint8_t type);

/** The codes that a terminus says it supports of a type. */
std::vector<std::uint8_t> SupportedCommands(const Terminus& terminus, std::uint8_t type);

} // namespace simulator
