/** What a completion code of a sensor command means to the poll. */
#include "common/log.hpp"
#include "common/status.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"

namespace vantric {

VantricStatus PLDMCmds::GetPLDMCommandsStatus(std::uint32_t completionCode,
                                              std::uint16_t sensorID) const {
    switch (completionCode) {
    case PLDM_SUCCESS:
        return STATUS_SUCCESS;
    case PLDM_ERROR:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "CMD failed for EID = %d\n", Eid());
        throw STATUS_COMMAND_FAILED;
    case PLDM_NOT_READY:
    case PLDM_SENSOR_NOT_READY:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Device is not ready for EID = %d\n", Eid());
        throw STATUS_DEVICE_NOT_READY;
    case PLDM_UNSUPPORTED_COMMAND:
        return STATUS_NOT_SUPPORTED;
    case PLDM_INVALID_SENSOR_ID:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid Sensor ID = %d\n", sensorID);
        return STATUS_INVALID_OR_CHANGED;
    default:
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d and error = %d\n", Eid(), completionCode);
        return STATUS_FAILURE;
    }
}

} // namespace vantric
