/** GetPLDMCommands: which commands the endpoint supports (DSP0240). */
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/types_in_use.hpp"

namespace vantric {

namespace {

constexpr PldmCommand getCommands{
    .type = PLDM_BASE, .code = CMD_GET_PLDM_COMMANDS, .capacity = 45, .notSent = "Send failed"};
constexpr std::size_t commandsOffset = 4;
constexpr std::size_t bitsInByte = 8;

} // namespace

VantricStatus PLDMCmds::GetSupportedPLDMCmds(std::uint32_t type, std::uint32_t version) {
    const auto typeByte = static_cast<std::uint8_t>(type);
    const auto response = Ask(getCommands, ByteWriter().Write(typeByte).Write(version).Finish());
    if (!response) {
        return STATUS_FAILURE;
    }

    const auto field = response->From(commandsOffset);
    const auto supported = extractedData->supportedTypes.find(typeByte);
    if (field.empty() || supported == extractedData->supportedTypes.end()) {
        return STATUS_SUCCESS;
    }
    CommandSet& commands = supported->second[version];
    for (std::size_t bit = 0; bit < field.size() * bitsInByte; ++bit) {
        if ((field[bit / bitsInByte] >> bit % bitsInByte & 1) != 0) {
            commands[bit % commands.size()] = 1;
        }
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetSupportedCmdsForType(std::uint8_t type) {
    const auto supported = extractedData->supportedTypes.find(type);
    if (supported == extractedData->supportedTypes.end()) {
        return STATUS_SUCCESS;
    }
    for (const auto& [version, commands] : supported->second) {
        if (GetSupportedPLDMCmds(type, version) != STATUS_SUCCESS) {
            return STATUS_FAILURE;
        }
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetSupportedCmds(std::uint32_t type) {
    if (type != allPldmTypes) {
        return GetSupportedCmdsForType(static_cast<std::uint8_t>(type));
    }
    for (const std::uint8_t inUse : typesInUse) {
        if (GetSupportedCmdsForType(inUse) != STATUS_SUCCESS) {
            return STATUS_FAILURE;
        }
    }
    return STATUS_SUCCESS;
}

} // namespace vantric
