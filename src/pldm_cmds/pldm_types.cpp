/** GetPLDMTypes and GetTID: who the endpoint is and which PLDM types it speaks (DSP0240). */
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"

namespace vantric {

namespace {

constexpr std::size_t typesCapacity = 21;
constexpr std::size_t typesOffset = 4;
constexpr std::uint8_t typeCount = 64;

constexpr std::size_t tidCapacity = 14;
constexpr std::size_t tidOffset = 4;

} // namespace

VantricStatus PLDMCmds::GetPLDMTypes() {
    const auto response = Exchange(
        {.type = PLDM_BASE, .command = CMD_GET_PLDM_TYPES, .data = {}, .capacity = typesCapacity});
    if (response.Failed()) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Send failed for EID = %d\n", Eid());
        return STATUS_FAILURE;
    }
    if (response.CompletionCode() != PLDM_SUCCESS) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d and error code = %d\n", Eid(),
                    response.CompletionCode());
        return STATUS_FAILURE;
    }

    const auto types = response.At<std::uint64_t>(typesOffset);
    for (std::uint8_t type = 0; type < typeCount; ++type) {
        if ((types >> type & 1) != 0) {
            extractedData->supportedTypes.try_emplace(type);
        }
    }
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetTID() {
    const auto response =
        Exchange({.type = PLDM_BASE, .command = CMD_GET_TID, .data = {}, .capacity = tidCapacity});
    if (response.Failed()) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Send failed for EID = %d\n", Eid());
        return STATUS_FAILURE;
    }
    if (response.CompletionCode() != PLDM_SUCCESS) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d and error code = %d\n", Eid(),
                    response.CompletionCode());
        return STATUS_FAILURE;
    }
    extractedData->TID = response.At<std::uint8_t>(tidOffset);
    return STATUS_SUCCESS;
}

} // namespace vantric
