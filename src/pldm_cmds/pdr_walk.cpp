/** GetPDR: the walk through the endpoint's repository (DSP0248). */
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/limits.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/transfer_bounds.hpp"

#include <algorithm>

namespace vantric {

namespace {

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

PldmRequest MakeRequest(const PdrPosition& at, std::uint32_t largestRecordSize,
                        std::size_t capacity) {
    return {.type = PLDM_PLATFORM,
            .command = CMD_GET_PDR,
            .data = ByteWriter()
                        .Write(at.recordHandle)
                        .Write(at.transferHandle)
                        .Write(at.operation)
                        .Write(static_cast<std::uint16_t>(largestRecordSize))
                        .Write(at.changeNumber)
                        .Finish(),
            .capacity = capacity};
}

/** Gathers the parts of one record and knows when the walk has gone on for too long. */
class PdrAssembly {
public:
    enum class Step { RECORD_COMPLETE, MORE_TO_COME, TOO_LONG };

    /** Takes one response and moves the position to the next part of the record. */
    Step Take(const PldmResponse& response, PdrPosition& position) {
        const auto part = response.From(recordDataOffset);
        switch (response.At<std::uint8_t>(transferFlagOffset)) {
        case TRANSFER_START:
            position.changeNumber = response.At<std::uint16_t>(changeNumberOffset);
            [[fallthrough]];
        case TRANSFER_MIDDLE:
            position.transferHandle = response.At<std::uint32_t>(nextTransferHandleOffset);
            position.operation = GET_NEXT_PART;
            return Append(part) ? Step::MORE_TO_COME : Step::TOO_LONG;
        case TRANSFER_START_AND_END:
            record.clear();
            [[fallthrough]];
        case TRANSFER_LAST:
        case TRANSFER_END:
            return Append(part) ? Step::RECORD_COMPLETE : Step::TOO_LONG;
        default:
            return bounds.AllowsMeaninglessFlag() ? Step::MORE_TO_COME : Step::TOO_LONG;
        }
    }

    std::span<const std::uint8_t> Record() const { return record; }

    /** Counts the complete record and starts the next one. False where the walk must end. */
    bool NextRecord() {
        received += 1;
        receivedBytes += record.size();
        record.clear();
        bounds.Restart();
        return received < limits::recordCount && receivedBytes <= limits::repositorySize;
    }

    std::size_t Received() const { return received; }

private:
    bool Append(std::span<const std::uint8_t> part) {
        if (!bounds.AllowsPart(part.size())) {
            return false;
        }
        record.insert(record.end(), part.begin(), part.end());
        return true;
    }

    std::vector<std::uint8_t> record;
    TransferBounds bounds{limits::recordSize};
    std::size_t received = 0;
    std::size_t receivedBytes = 0;
};

} // namespace

std::size_t PLDMCmds::PdrCapacity() const {
    const std::size_t claimed = extractedData->iLargestRecordSize;
    return std::min(claimed, limits::recordSize) + responseOverhead;
}

int PLDMCmds::GetPDR() {
    PdrPosition position;
    PdrAssembly assembly;
    bool more = true;
    while (more) {
        const auto response =
            Exchange(MakeRequest(position, extractedData->iLargestRecordSize, PdrCapacity()));
        if (response.Failed()) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d\n", eid);
            return ToInt(VantricStatus::FAILURE);
        }
        if (response.CompletionCode() != PLDM_SUCCESS) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d and error code = %d\n", eid,
                        response.CompletionCode());
            return ToInt(VantricStatus::FAILURE);
        }

        const auto step = assembly.Take(response, position);
        bool tooLong = step == PdrAssembly::Step::TOO_LONG;
        if (step == PdrAssembly::Step::RECORD_COMPLETE) {
            HandlePDR(assembly.Record());
            position = {.recordHandle = response.At<std::uint32_t>(nextRecordHandleOffset)};
            more = position.recordHandle != 0;
            tooLong = !assembly.NextRecord() && more;
        }
        if (tooLong) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "PDR walk without end for EID = %d, %d records read\n",
                        eid, static_cast<int>(assembly.Received()));
            return ToInt(VantricStatus::FAILURE);
        }
    }

    // The count has always been kept in one byte, whatever the repository holds.
    const auto received = static_cast<std::uint8_t>(assembly.Received());
    if (received != extractedData->iRecordCount) {
        VANTRIC_LOG(LOG_LEVEL_ERROR,
                    "Mismatch in expected PDR Count (%d) and received PDR Count(%d)\n",
                    extractedData->iRecordCount, received);
    }
    return ToInt(VantricStatus::SUCCESS);
}

} // namespace vantric
