/** GetPLDMVersion and SelectPLDMVersion: versions of the PLDM types (DSP0240). */
#include "common/byte_reader.hpp"
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/types_in_use.hpp"
#include "records/limits.hpp"

namespace vantric {

namespace {

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

} // namespace

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

} // namespace vantric
