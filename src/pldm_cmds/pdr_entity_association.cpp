// SPDX-License-Identifier: Apache-2.0
/** Entity Association PDR, type 15 (DSP0248). */
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "vocabulary/vocabulary.hpp"

namespace vantric {

void HandleEntityAssociationPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                int eid) {
    ByteReader body = BodyOf(record);
    auto association = std::make_shared<EAPDR>();
    association->ContainerID = body.Read<std::uint16_t>();
    association->AssociationType = body.Read<std::uint8_t>();
    association->ContainerEntityType = body.Read<std::uint16_t>();
    association->ContainerEntityInstanceNumber = body.Read<std::uint16_t>();
    association->ContainerEntityContainerID = body.Read<std::uint16_t>();
    association->ContainedEntityCount = body.Read<std::uint8_t>();

    association->containedEntities.reserve(association->ContainedEntityCount);
    for (unsigned i = 0; i < association->ContainedEntityCount; ++i) {
        auto entity = std::make_shared<CEList>();
        entity->ContainedEntityType = body.Read<std::uint16_t>();
        entity->ContainedEntityInstanceNumber = body.Read<std::uint16_t>();
        entity->ContainedEntityContainerID = body.Read<std::uint16_t>();
        entity->ContainerID = association->ContainerID;
        association->containedEntities.push_back(std::move(entity));
    }
    // An entity without a word can't stand in a path, and so holds nothing that could be shown.
    if (IsWhole(eid, body, PDR_ENTITY_ASSOCIATION) &&
        entityWords.contains(association->ContainerEntityType)) {
        AppendBounded(data.entityAssociations, std::move(association));
    }
}

} // namespace vantric
