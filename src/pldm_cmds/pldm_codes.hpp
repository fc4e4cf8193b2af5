// SPDX-License-Identifier: Apache-2.0
/** The numbers of the PLDM standards that the requester uses. */
#pragma once

#include <cstdint>

namespace vantric {

/** PLDM types (DSP0245). */
enum PldmType : std::uint8_t {
    PLDM_BASE = 0,
    PLDM_PLATFORM = 2,
    PLDM_FRU = 4,
    PLDM_FW_UPDATE = 5,
};

/** Stands for all types in use where an operation takes a type. */
inline constexpr std::uint32_t allPldmTypes = 255;

/** Commands of PLDM type 0 (DSP0240). */
enum BaseCommand : std::uint8_t {
    CMD_GET_TID = 0x02,
    CMD_GET_PLDM_VERSION = 0x03,
    CMD_GET_PLDM_TYPES = 0x04,
    CMD_GET_PLDM_COMMANDS = 0x05,
    CMD_SELECT_PLDM_VERSION = 0x06,
};

/** Commands of PLDM type 2 (DSP0248). */
enum PlatformCommand : std::uint8_t {
    CMD_SET_NUMERIC_SENSOR_ENABLE = 0x10,
    CMD_GET_SENSOR_READING = 0x11,
    CMD_GET_STATE_SENSOR_READINGS = 0x21,
    CMD_GET_PDR_REPOSITORY_INFO = 0x50,
    CMD_GET_PDR = 0x51,
};

/** Commands of PLDM type 4 (DSP0257). */
enum FruCommand : std::uint8_t {
    CMD_GET_FRU_RECORD_TABLE_METADATA = 0x01,
    CMD_GET_FRU_RECORD_TABLE = 0x02,
};

/** Commands of PLDM type 5 (DSP0267). */
enum FirmwareCommand : std::uint8_t {
    CMD_GET_FIRMWARE_PARAMETERS = 0x02,
};

/** Completion codes (DSP0240, and DSP0248 from 128 on). */
enum CompletionCode : std::uint8_t {
    PLDM_SUCCESS = 0,
    PLDM_ERROR = 1,
    PLDM_NOT_READY = 4,
    PLDM_UNSUPPORTED_COMMAND = 5,
    PLDM_INVALID_SENSOR_ID = 128,
    PLDM_SENSOR_NOT_READY = 129,
};

/** Transfer operation flag of a multipart request. */
enum TransferOperation : std::uint8_t {
    GET_NEXT_PART = 0,
    GET_FIRST_PART = 1,
};

/** Transfer flag of a multipart response. PDR and FRU transfers end a transfer with 2 or 4. */
enum TransferFlag : std::uint8_t {
    TRANSFER_MIDDLE = 0,
    TRANSFER_START = 1,
    TRANSFER_LAST = 2,
    TRANSFER_END = 4,
    TRANSFER_START_AND_END = 5,
};

/** PDR types that have a parser (DSP0248). */
enum PdrType : std::uint8_t {
    PDR_TERMINUS_LOCATOR = 1,
    PDR_NUMERIC_SENSOR = 2,
    PDR_STATE_SENSOR = 4,
    PDR_SENSOR_AUXILIARY_NAMES = 6,
    PDR_NUMERIC_EFFECTOR = 9,
    PDR_NUMERIC_EFFECTOR_INIT = 10,
    PDR_STATE_EFFECTOR = 11,
    PDR_STATE_EFFECTOR_INIT = 12,
    PDR_ENTITY_ASSOCIATION = 15,
    PDR_COMPACT_NUMERIC_SENSOR = 21,
};

} // namespace vantric
