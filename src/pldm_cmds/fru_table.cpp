// SPDX-License-Identifier: Apache-2.0
/** GetFRURecordTableMetadata and GetFRURecordTable: how the FRU table comes in (DSP0257). */
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/multipart_assembly.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "records/limits.hpp"

namespace vantric {

namespace {

constexpr PldmCommand getMetadata{.type = PLDM_FRU,
                                  .code = CMD_GET_FRU_RECORD_TABLE_METADATA,
                                  .capacity = 30,
                                  .notSent = "Send failed",
                                  .refusedLevel = LOG_LEVEL_TRACE};
constexpr PldmCommand getTable{
    .type = PLDM_FRU, .code = CMD_GET_FRU_RECORD_TABLE, .spare = 0, .notSent = "Failed"};
constexpr std::size_t tableLengthOffset = 10;
constexpr std::size_t recordCountOffset = 16;

constexpr std::size_t nextHandleOffset = 4;
constexpr std::size_t transferFlagOffset = 8;
constexpr std::size_t tableDataOffset = 9;
constexpr std::uint32_t firstHandle = 1;

} // namespace

VantricStatus PLDMCmds::GetFRUMetaData() {
    if (!extractedData->supportedTypes.contains(PLDM_FRU)) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "PLDM FRU not supported for EID = %d\n", Eid());
        return STATUS_NOT_SUPPORTED;
    }
    const auto response = Ask(getMetadata);
    if (!response) {
        return STATUS_FAILURE;
    }
    extractedData->fruTableLength = response->At<std::uint32_t>(tableLengthOffset);
    extractedData->fruRecordCount = response->At<std::uint16_t>(recordCountOffset);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "FRU Table Length = %d\n", extractedData->fruTableLength);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Total Number of Records in Table = %d\n",
                extractedData->fruRecordCount);
    return STATUS_SUCCESS;
}

VantricStatus PLDMCmds::GetFRUContents() {
    const auto length = static_cast<std::uint16_t>(extractedData->fruTableLength);
    MultipartAssembly assembly(limits::fruTableSize);
    std::uint32_t handle = firstHandle;
    std::uint8_t operation = GET_FIRST_PART;
    std::size_t tables = 0;
    const auto takeTable = [&] {
        extractedData->fruTable = assembly.Finish();
        CheckFRURecordTypeAndParse(extractedData->fruTable, *extractedData, Eid());
        tables += 1;
    };
    bool more = true;
    while (more) {
        const auto response = Ask(getTable.WithCapacity(length + tableDataOffset),
                                  ByteWriter().Write(handle).Write(operation).Finish());
        if (!response) {
            return STATUS_FAILURE;
        }

        const auto nextHandle = response->At<std::uint32_t>(nextHandleOffset);
        switch (assembly.Take(response->At<std::uint8_t>(transferFlagOffset),
                              response->From(tableDataOffset))) {
        case MultipartAssembly::Step::COMPLETE:
            takeTable();
            handle = nextHandle;
            operation = GET_FIRST_PART;
            more = handle != 0 && tables < extractedData->fruRecordCount;
            break;
        case MultipartAssembly::Step::MORE_TO_COME:
            handle = nextHandle;
            operation = GET_NEXT_PART;
            break;
        case MultipartAssembly::Step::NO_MEANING:
            break;
        case MultipartAssembly::Step::TOO_LONG:
            VANTRIC_LOG(LOG_LEVEL_ERROR, "FRU table without end for EID = %d\n", Eid());
            // Only the first record is taken, and a table cut at its size has that whole. One that
            // stopped bringing bytes may not: then those fields count that came.
            if (assembly.HasBytes()) {
                takeTable();
            }
            return tables > 0 ? STATUS_SUCCESS : STATUS_FAILURE;
        }
    }
    return STATUS_SUCCESS;
}

} // namespace vantric
