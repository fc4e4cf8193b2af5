/** GetPDRRepositoryInfo: whether the endpoint's records must be read again (DSP0248). */
#include "common/byte_reader.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/timestamp104.hpp"

namespace vantric {

namespace {

constexpr PldmCommand getRepositoryInfo{.type = PLDM_PLATFORM,
                                        .code = CMD_GET_PDR_REPOSITORY_INFO,
                                        .capacity = 53,
                                        .notSent = "Failed",
                                        .refusedWith = "error code is"};
constexpr std::size_t repositoryStateOffset = 4;
constexpr std::size_t updateTimeOffset = 5;
constexpr std::size_t recordCountOffset = 31;
constexpr std::size_t repositorySizeOffset = 35;
constexpr std::size_t largestRecordSizeOffset = 39;
constexpr std::size_t handleTimeoutOffset = 43;

constexpr std::uint8_t repositoryAvailable = 0;

} // namespace

bool PLDMCmds::IsPDRChanged(const Timestamp104& updateTime) const {
    return updateTime != extractedData->PDRUpdatetime;
}

VantricStatus PLDMCmds::GetPDRRepositoryInfo(std::uint8_t forceRead) {
    const bool forced = forceRead != 0;
    const auto response = Ask(getRepositoryInfo);
    if (!response) {
        return STATUS_FAILURE;
    }
    if (response->At<std::uint8_t>(repositoryStateOffset) != repositoryAvailable) {
        // The endpoint is still at work on it. The update time stays, so a later call sees it.
        return STATUS_SUCCESS;
    }

    auto& data = *extractedData;
    data.iRecordCount = response->At<std::uint32_t>(recordCountOffset);
    data.iRepositorySize = response->At<std::uint32_t>(repositorySizeOffset);
    data.iLargestRecordSize = response->At<std::uint32_t>(largestRecordSizeOffset);
    data.iDataTransferHandleTimeout = response->At<std::uint8_t>(handleTimeoutOffset);

    ByteReader reader(response->From(updateTimeOffset));
    const auto updateTime = ReadTimestamp104(reader);
    if (!IsPDRChanged(updateTime) && !forced) {
        return STATUS_SUCCESS;
    }
    data.PDRUpdatetime = updateTime;
    data.numericSensors.clear();
    data.effectors.clear();
    data.stateSensors.clear();
    data.entityAssociations.clear();
    VANTRIC_LOG(LOG_LEVEL_TRACE, "PDR Changed!!!\n");

    if (GetPDR() != STATUS_SUCCESS) {
        return STATUS_FAILURE;
    }
    return forced ? STATUS_SUCCESS : STATUS_INVALID_OR_CHANGED;
}

} // namespace vantric
