/** Which parser takes which PDR. */
#include "common/byte_reader.hpp"
#include "common/log.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"

namespace vantric {

namespace {
constexpr std::size_t pdrTypeOffset = 5;
} // namespace

void PLDMCmds::HandlePDR(std::span<const std::uint8_t> record) {
    const auto type = ByteReader(record).At<std::uint8_t>(pdrTypeOffset);
    VANTRIC_LOG(LOG_LEVEL_TRACE, "PDR Type = %d\n", type);
    switch (type) {
    case PDR_TERMINUS_LOCATOR:
        return HandleTerminusLocatorPDR(record);
    case PDR_NUMERIC_SENSOR:
        return HandleNumericSensorPDR(record);
    case PDR_STATE_SENSOR:
        return HandleStateSensorPDR(record);
    case PDR_SENSOR_AUXILIARY_NAMES:
        return HandleSensorAuxNamesPDR(record);
    case PDR_NUMERIC_EFFECTOR:
        return HandleNumericEffectorPDR(record);
    case PDR_NUMERIC_EFFECTOR_INIT:
        return HandleNumericEffectorInitPDR(record);
    case PDR_STATE_EFFECTOR:
        return HandleStateEffectorPDR(record);
    case PDR_STATE_EFFECTOR_INIT:
        return HandleStateEffectorInitPDR(record);
    case PDR_ENTITY_ASSOCIATION:
        hasEntityAssociation = true;
        return HandleEntityAssociationPDR(record);
    case PDR_COMPACT_NUMERIC_SENSOR:
        return HandleCompactNumericSensorPDR(record);
    default:
        return;
    }
}

bool PLDMCmds::IsWhole(const ByteReader& body, std::uint8_t pdrType) const {
    if (body.Truncated()) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "PDR of type %d for EID = %d ends before its fields do\n",
                    pdrType, Eid());
        return false;
    }
    return true;
}

} // namespace vantric
