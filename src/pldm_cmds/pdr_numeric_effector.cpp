// SPDX-License-Identifier: Apache-2.0
/** Numeric Effector PDR and its initialization, types 9 and 10 (DSP0248). */
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"

namespace vantric {

namespace {

/** Reads a value whose width and sign follow from EffectorDataSize, 0 to 5. */
std::int64_t ReadValue(ByteReader& body, std::uint8_t effectorDataSize) {
    switch (effectorDataSize) {
    case 0:
        return body.Read<std::uint8_t>();
    case 1:
        return body.Read<std::int8_t>();
    case 2:
        return body.Read<std::uint16_t>();
    case 3:
        return body.Read<std::int16_t>();
    case 4:
        return body.Read<std::uint32_t>();
    default:
        return body.Read<std::int32_t>();
    }
}

/** Reads the limits and ranges, all in the width of the effector's data. A record may hold fewer
 *  bytes, since its own rangeFieldFormat can say narrower ranges; what isn't there reads as 0. */
void ReadRanges(ByteReader& body, _Effectors& effector) {
    constexpr std::uint8_t lastDataSize = 5;
    constexpr std::uint8_t firstFourByteSize = 4;
    const std::uint8_t size = effector.EffectorDataSize;
    if (size > lastDataSize) {
        return;
    }
    effector.maxSettable = ReadValue(body, size);
    effector.minSettable = ReadValue(body, size);
    effector.rangeFieldFormat = body.Read<std::uint8_t>();
    effector.rangeFieldSupport = body.Read<std::uint8_t>();
    if (size >= firstFourByteSize) {
        body.Skip(2); // these values stand on a multiple of four
    }
    effector.nominalValue = ReadValue(body, size);
    effector.normalMax = ReadValue(body, size);
    effector.normalMin = ReadValue(body, size);
    effector.ratedMax = ReadValue(body, size);
    effector.ratedMin = ReadValue(body, size);
}

} // namespace

void HandleNumericEffectorPDR(std::span<const std::uint8_t> record, __extractedData& data,
                              int eid) {
    ByteReader body = BodyOf(record);
    auto effector = std::make_shared<_Effectors>();
    effector->PLDMTerminusHandle = body.Read<std::uint16_t>();
    effector->EffectorID = body.Read<std::uint16_t>();
    effector->entityType = body.Read<std::uint16_t>();
    effector->entityInstanceNumber = body.Read<std::uint16_t>();
    effector->containerID = body.Read<std::uint16_t>();
    effector->EffectorSemanticID = body.Read<std::uint16_t>();
    effector->EffectorInit = body.Read<std::uint8_t>();
    effector->EffectorAuxiliaryNamesPDR = body.Read<std::uint8_t>();
    effector->baseUnit = body.Read<std::uint8_t>();
    effector->unitModifier = body.Read<std::int8_t>();
    effector->rateUnit = body.Read<std::uint8_t>();
    effector->baseOEMUnitHandle = body.Read<std::uint8_t>();
    effector->auxUnit = body.Read<std::uint8_t>();
    effector->auxUnitModifier = body.Read<std::int8_t>();
    effector->auxrateUnit = body.Read<std::uint8_t>();
    effector->auxOEMUnitHandle = body.Read<std::uint8_t>();
    body.Skip(1); // isLinear isn't taken
    effector->EffectorDataSize = body.Read<std::uint8_t>();
    effector->resolution = ReadReal32(body);
    effector->offset = ReadReal32(body);
    effector->accuracy = body.Read<std::uint16_t>();
    effector->plusTolerance = body.Read<std::uint8_t>();
    effector->minusTolerance = body.Read<std::uint8_t>();
    effector->stateTransitionInterval = ReadReal32(body);
    effector->TransitionInterval = ReadReal32(body);
    if (IsWhole(eid, body, PDR_NUMERIC_EFFECTOR)) {
        ReadRanges(body, *effector);
        AppendBounded(data.effectors, std::move(effector));
    }
}

void HandleNumericEffectorInitPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                  int eid) {
    ByteReader body = BodyOf(record);
    auto init = std::make_shared<__Numeric_Effector_Init>();
    init->PLDMTerminusHandle = body.Read<std::uint16_t>();
    init->effectorID = body.Read<std::uint16_t>();
    if (IsWhole(eid, body, PDR_NUMERIC_EFFECTOR_INIT)) {
        init->entityType = body.Read<std::uint16_t>();
        init->entityInstanceNumber = body.Read<std::uint8_t>();
        AppendBounded(data.numericEffectorInits, std::move(init));
    }
}

} // namespace vantric
