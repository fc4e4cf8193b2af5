// SPDX-License-Identifier: Apache-2.0
/** GetFirmwareParameters: the version of the active firmware (DSP0267). */
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"

#include <algorithm>

namespace vantric {

namespace {

constexpr PldmCommand getParameters{.type = PLDM_FW_UPDATE,
                                    .code = CMD_GET_FIRMWARE_PARAMETERS,
                                    .capacity = 1024,
                                    .notSent = "Send failed"};
constexpr std::size_t versionLengthOffset = 11;
constexpr std::size_t versionOffset = 14;

} // namespace

std::string PLDMCmds::GetFWParameters() {
    if (!extractedData->supportedTypes.contains(PLDM_FW_UPDATE)) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "PLDM FW Update not supported for EID = %d\n", Eid());
        return {};
    }
    const auto response = Ask(getParameters);
    if (!response) {
        return {};
    }
    const std::size_t length = response->At<std::uint8_t>(versionLengthOffset);
    // Bytes that were claimed and not sent are no part of the version.
    const auto rest = response->From(versionOffset);
    const auto text = rest.first(std::min(length, rest.size()));
    std::string version(text.begin(), text.end());
    VANTRIC_LOG(LOG_LEVEL_TRACE, "FWVersion = %s for Slot = %d\n", version.c_str(), slot);
    return version;
}

} // namespace vantric
