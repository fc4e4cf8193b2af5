// SPDX-License-Identifier: Apache-2.0
/** The base commands: who the endpoint is, and which PLDM types, versions and commands it speaks
 *  (DSP0240). */
#include "common/byte_reader.hpp"
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "records/limits.hpp"

#include <array>
#include <optional>

namespace vantric {

namespace {

/** The PLDM types that this requester speaks, in the order in which an endpoint is asked about
 *  them. */
constexpr std::array<std::uint8_t, 4> typesInUse{PLDM_BASE, PLDM_PLATFORM, PLDM_FRU,
                                                 PLDM_FW_UPDATE};

/** The lowest version, as a ver32 word, that is selected; nothing for a type not in use. */
constexpr std::optional<std::uint32_t> MinimumVersion(std::uint8_t type) {
    switch (type) {
    case PLDM_BASE:
        return 0xF1F1F000; // 1.1.0
    case PLDM_PLATFORM:
        return 0xF1F2F200; // 1.2.2
    case PLDM_FRU:
        return 0xF1F0F100; // 1.0.1
    case PLDM_FW_UPDATE:
        return 0xF1F2F000; // 1.2.0
    default:
        return std::nullopt;
    }
}

constexpr PldmCommand getTypes{
    .type = PLDM_BASE, .code = CMD_GET_PLDM_TYPES, .capacity = 21, .notSent = "Send failed"};
constexpr std::size_t typesOffset = 4;
constexpr std::uint8_t typeCount = 64;

constexpr PldmCommand getTid{
    .type = PLDM_BASE, .code = CMD_GET_TID, .capacity = 14, .notSent = "Send failed"};
constexpr std::size_t tidOffset = 4;

constexpr PldmCommand getVersion{
    .type = PLDM_BASE, .code = CMD_GET_PLDM_VERSION, .capacity = 242, .notSent = "Send failed"};
constexpr std::size_t nextHandleOffset = 4;
constexpr std::size_t transferFlagOffset = 8;
constexpr std::size_t versionDataOffset = 9;

constexpr PldmCommand selectVersion{
    .type = PLDM_BASE, .code = CMD_SELECT_PLDM_VERSION, .capacity = 13, .notSent = "Failed"};

constexpr std::size_t wordSize = 4;

/** Adds the versions of one part to the map. Returns false where they are too many to be true. */
bool TakeVersions(std::span<const std::uint8_t> data, VersionMap& versions) {
    // The last word is the checksum of the list.
    const std::size_t words = data.size() / wordSize;
    ByteReader reader(data);
    for (std::size_t i = 1; i < words; ++i) {
        const auto version = reader.Read<std::uint32_t>();
        if (version == 0 || versions.contains(version)) {
            continue;
        }
        if (versions.size() == limits::versionsOfType) {
            return false;
        }
        versions.try_emplace(version);
    }
    return true;
}

constexpr PldmCommand getCommands{
    .type = PLDM_BASE, .code = CMD_GET_PLDM_COMMANDS, .capacity = 45, .notSent = "Send failed"};
constexpr std::size_t commandsOffset = 4;
constexpr std::size_t bitsInByte = 8;

} // namespace

VantricStatus PLDMCmds::GetPLDMTypes() {
    const auto response = Ask(getTypes);
    if (!response) {
        return STATUS_FAILURE;
    }

    const auto types = response->At<std::uint64_t>(typesOffset);
    for (std::uint8_t type = 0; type < typeCount; ++type) {
        if ((types >> type & 1) != 0) {
            extractedData->supportedTypes.try_emplace(type);
        }
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetTID() {
    const auto response = Ask(getTid);
    if (!response) {
        return STATUS_FAILURE;
    }
    extractedData->TID = response->At<std::uint8_t>(tidOffset);
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetPLDMVersionForType(std::uint8_t type) {
    const auto supported = extractedData->supportedTypes.find(type);
    if (supported == extractedData->supportedTypes.end()) {
        return STATUS_FAILURE;
    }

    std::uint32_t handle = 0;
    std::uint8_t operation = GET_FIRST_PART;
    std::size_t exchanges = 0;
    bool more = true;
    while (more) {
        const auto response =
            Ask(getVersion, ByteWriter().Write(handle).Write(operation).Write(type).Finish());
        if (!response) {
            return STATUS_FAILURE;
        }
        exchanges += 1;
        const bool taken = TakeVersions(response->From(versionDataOffset), supported->second);
        if (!taken || exchanges > limits::versionsOfType) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Too many versions of type %d for EID = %d\n", type,
                        Eid());
            return STATUS_FAILURE;
        }
        const auto flag = response->At<std::uint8_t>(transferFlagOffset);
        handle = response->At<std::uint32_t>(nextHandleOffset);
        operation = GET_NEXT_PART;
        more = (flag == TRANSFER_START || flag == TRANSFER_LAST) && handle != 0;
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetPLDMVersions(std::uint32_t type) {
    if (type != allPldmTypes) {
        return GetPLDMVersionForType(static_cast<std::uint8_t>(type));
    }
    for (const std::uint8_t inUse : typesInUse) {
        // An endpoint that refuses this for a type goes on without versions of it.
        GetPLDMVersionForType(inUse);
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::SelectPLDMVersion(std::uint8_t type, std::uint32_t version) {
    const auto response = Ask(selectVersion, ByteWriter().Write(type).Write(version).Finish());
    return response ? STATUS_SUCCESS : STATUS_FAILURE;
}

VantricStatus PLDMCmds::SelectPLDMVersions() {
    for (const auto& [type, versions] : extractedData->supportedTypes) {
        const auto minimum = MinimumVersion(type);
        for (const auto& [version, commands] : versions) {
            if (minimum && version >= *minimum) {
                SelectPLDMVersion(type, version);
            }
        }
    }
    return STATUS_SUCCESS;
}

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
