// SPDX-License-Identifier: Apache-2.0
/** State Effector PDR and its initialization, types 11 and 12 (DSP0248). */
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"

#include <algorithm>

namespace vantric {

void HandleStateEffectorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid) {
    constexpr std::size_t compositesOffset = 16;
    ByteReader body = BodyOf(record);
    auto effector = std::make_shared<_state_Effector>();
    effector->PLDMTerminusHandle = body.Read<std::uint16_t>();
    effector->effectorID = body.Read<std::uint16_t>();
    effector->entityType = body.Read<std::uint16_t>();
    effector->entityInstanceNumber = body.Read<std::uint16_t>();
    effector->containerID = body.Read<std::uint16_t>();
    effector->effectorSemanticID = body.Read<std::uint16_t>();
    effector->effectorInit = body.Read<std::uint8_t>();
    effector->effectorDescriptionPDR = body.Read<std::uint8_t>();
    effector->compositeEffectorCount = body.Read<std::uint8_t>();

    if (!IsWhole(eid, body, PDR_STATE_EFFECTOR)) {
        return;
    }

    body.Seek(compositesOffset);
    const auto kept = std::min<std::size_t>(effector->compositeEffectorCount,
                                            _state_Effector::maxCompositeEffectors);
    for (std::size_t i = 0; i < kept; ++i) {
        std::ranges::copy(body.Take(_state_Effector::bytesOfComposite),
                          effector->compositeEffectors[i].begin());
    }
    AppendBounded(data.stateEffectors, std::move(effector));
}

void HandleStateEffectorInitPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                int eid) {
    constexpr std::size_t identitySize = 4; // terminus handle and effector ID
    ByteReader body = BodyOf(record);
    body.Skip(identitySize);
    if (IsWhole(eid, body, PDR_STATE_EFFECTOR_INIT)) {
        auto init = std::make_shared<__State_Effectors_Init_PDR>();
        body.Seek(0);
        std::ranges::copy(body.Take(init->body.size()), init->body.begin());
        AppendBounded(data.stateEffectorInits, std::move(init));
    }
}

} // namespace vantric
