// SPDX-License-Identifier: Apache-2.0
/** GetPDRRepositoryInfo and GetPDR: when the endpoint's records are read, and the walk through them
 *  (DSP0248). */
#include "common/byte_reader.hpp"
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/multipart_assembly.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "pldm_cmds/timestamp104.hpp"
#include "records/limits.hpp"

#include <algorithm>
#include <unordered_set>

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

constexpr PldmCommand getRecord{.type = PLDM_PLATFORM, .code = CMD_GET_PDR, .notSent = "Failed"};
constexpr std::size_t responseOverhead = 34;
constexpr std::size_t nextRecordHandleOffset = 4;
constexpr std::size_t nextTransferHandleOffset = 8;
constexpr std::size_t transferFlagOffset = 12;
constexpr std::size_t recordDataOffset = 15;
constexpr std::size_t changeNumberOffset = 21;

/** What the next GetPDR asks for. */
struct PdrPosition {
    std::uint32_t recordHandle = 0;
    std::uint32_t transferHandle = 0;
    std::uint8_t operation = GET_FIRST_PART;
    std::uint16_t changeNumber = 0;
};

/** The request's data. */
std::vector<std::uint8_t> Describe(const PdrPosition& at, std::uint32_t largestRecordSize) {
    return ByteWriter()
        .Write(at.recordHandle)
        .Write(at.transferHandle)
        .Write(at.operation)
        .Write(static_cast<std::uint16_t>(largestRecordSize))
        .Write(at.changeNumber)
        .Finish();
}

/** The records that a walk has come by. */
class VisitedRecords {
public:
    /** @param askedHandle 0 for the first record, whose own handle stands in its header */
    void Add(std::uint32_t askedHandle, std::span<const std::uint8_t> record) {
        const auto handleInHeader = ByteReader(record).Read<std::uint32_t>();
        if (askedHandle == 0) {
            first = handleInHeader;
        } else {
            headersAgree = headersAgree && handleInHeader == askedHandle;
        }
        const bool isNew = handles.insert(askedHandle == 0 ? first : askedHandle).second;
        repeatedInARow = isNew ? 0 : repeatedInARow + 1;
        count += 1;
    }

    std::size_t Count() const { return count; }

    /** True if the walk has been at the next record and has all that the endpoint counts: its last
     *  record leads to an earlier one. A handle that comes again before that may still lead on. */
    bool LeadsBackTo(std::uint32_t nextHandle, std::uint32_t countOfEndpoint) const {
        return countOfEndpoint > 0 && handles.size() >= countOfEndpoint &&
               handles.contains(nextHandle) && (headersAgree || nextHandle != first);
    }

    /** True if the walk goes round without anything new. */
    bool GoesRound() const { return repeatedInARow >= limits::idleResponses; }

private:
    std::unordered_set<std::uint32_t> handles;
    std::uint32_t first = 0;
    bool headersAgree = true; ///< the headers have the handles that the walk goes by
    std::size_t repeatedInARow = 0;
    std::size_t count = 0;
};

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

std::size_t PLDMCmds::PdrCapacity() const {
    const std::size_t claimed = extractedData->iLargestRecordSize;
    return std::min(claimed, limits::recordSize) + responseOverhead;
}

VantricStatus PLDMCmds::GetPDR() {
    MultipartAssembly assembly(limits::recordSize);
    PdrPosition position;
    VisitedRecords visited;
    bool more = true;
    bool endless = false;
    while (more && !endless) {
        const auto response = Ask(getRecord.WithCapacity(PdrCapacity()),
                                  Describe(position, extractedData->iLargestRecordSize));
        if (!response) {
            return STATUS_FAILURE;
        }

        const auto flag = response->At<std::uint8_t>(transferFlagOffset);
        switch (assembly.Take(flag, response->From(recordDataOffset))) {
        case MultipartAssembly::Step::COMPLETE: {
            const auto record = assembly.Finish();
            hasEntityAssociation =
                hasEntityAssociation || PdrTypeOf(record) == PDR_ENTITY_ASSOCIATION;
            HandlePDR(record, *extractedData, Eid());
            visited.Add(position.recordHandle, record);
            endless = visited.GoesRound();
            position = {.recordHandle = response->At<std::uint32_t>(nextRecordHandleOffset)};
            more = position.recordHandle != 0 &&
                   !visited.LeadsBackTo(position.recordHandle, extractedData->iRecordCount);
            break;
        }
        case MultipartAssembly::Step::MORE_TO_COME:
            if (flag == TRANSFER_START) {
                position.changeNumber = response->At<std::uint16_t>(changeNumberOffset);
            }
            position.transferHandle = response->At<std::uint32_t>(nextTransferHandleOffset);
            position.operation = GET_NEXT_PART;
            break;
        case MultipartAssembly::Step::NO_MEANING:
            break;
        case MultipartAssembly::Step::TOO_LONG:
            endless = true;
            break;
        }
    }
    if (endless) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "PDR walk without end for EID = %d\n", Eid());
        return STATUS_FAILURE;
    }

    // Counted in one byte, whatever the repository holds.
    const auto received = static_cast<std::uint8_t>(visited.Count());
    if (received != extractedData->iRecordCount) {
        VANTRIC_LOG(LOG_LEVEL_ERROR,
                    "Mismatch in expected PDR Count (%d) and received PDR Count(%d)\n",
                    extractedData->iRecordCount, received);
    }
    return STATUS_SUCCESS;
}

} // namespace vantric
