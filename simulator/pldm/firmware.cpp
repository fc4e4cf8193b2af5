// SPDX-License-Identifier: Apache-2.0
#include "pldm/command.hpp"

namespace simulator {

namespace {

Bytes GetFirmwareParameters(Terminus& terminus, simulator_link::PayloadReader&, Seconds) {
    const auto& firmware = terminus.description.firmware;
    constexpr std::uint32_t noCapabilities = 0;
    constexpr std::uint16_t noComponents = 0;
    return Success()
        .Write(noCapabilities)
        .Write(noComponents)
        .Write(firmware.activeType)
        .Write(static_cast<std::uint8_t>(firmware.active.size()))
        .Write(firmware.pendingType)
        .Write(static_cast<std::uint8_t>(firmware.pending.size()))
        .Write(std::span<const std::uint8_t>(firmware.active))
        .Write(std::span<const std::uint8_t>(firmware.pending))
        .Finish();
}

} // namespace

std::span<const Command> FirmwareCommands() {
    static constexpr Command commands[] = {{0x02, 0, GetFirmwareParameters}};
    return commands;
}

} // namespace simulator
