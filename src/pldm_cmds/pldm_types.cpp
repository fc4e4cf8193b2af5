/** GetPLDMTypes and GetTID: who the endpoint is and which PLDM types it speaks (DSP0240). */
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"

namespace vantric {

namespace {

constexpr PldmCommand getTypes{
    .type = PLDM_BASE, .code = CMD_GET_PLDM_TYPES, .capacity = 21, .notSent = "Send failed"};
constexpr std::size_t typesOffset = 4;
constexpr std::uint8_t typeCount = 64;

constexpr PldmCommand getTid{
    .type = PLDM_BASE, .code = CMD_GET_TID, .capacity = 14, .notSent = "Send failed"};
constexpr std::size_t tidOffset = 4;

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

} // namespace vantric
