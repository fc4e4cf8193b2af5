// SPDX-License-Identifier: Apache-2.0
/** Which parser takes which PDR. */
#include "common/log.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"

namespace vantric {

void HandlePDR(std::span<const std::uint8_t> record, __extractedData& data, int eid) {
    const auto type = PdrTypeOf(record);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "PDR Type = %d\n", type);
    switch (type) {
    case PDR_TERMINUS_LOCATOR:
        return HandleTerminusLocatorPDR(record, data, eid);
    case PDR_NUMERIC_SENSOR:
        return HandleNumericSensorPDR(record, data, eid);
    case PDR_STATE_SENSOR:
        return HandleStateSensorPDR(record, data, eid);
    case PDR_SENSOR_AUXILIARY_NAMES:
        return HandleSensorAuxNamesPDR(record, data);
    case PDR_NUMERIC_EFFECTOR:
        return HandleNumericEffectorPDR(record, data, eid);
    case PDR_NUMERIC_EFFECTOR_INIT:
        return HandleNumericEffectorInitPDR(record, data, eid);
    case PDR_STATE_EFFECTOR:
        return HandleStateEffectorPDR(record, data, eid);
    case PDR_STATE_EFFECTOR_INIT:
        return HandleStateEffectorInitPDR(record, data, eid);
    case PDR_ENTITY_ASSOCIATION:
        return HandleEntityAssociationPDR(record, data, eid);
    case PDR_COMPACT_NUMERIC_SENSOR:
        return HandleCompactNumericSensorPDR(record, data, eid);
    default:
        return;
    }
}

bool IsWhole(int eid, const ByteReader& body, std::uint8_t pdrType) {
    if (body.Truncated()) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "PDR of type %d for EID = %d ends before its fields do\n",
                    pdrType, eid);
        return false;
    }
    return true;
}

} // namespace vantric
