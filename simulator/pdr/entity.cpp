// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"

namespace simulator {

using simulator_link::PayloadWriter;

void WriteEntity(PayloadWriter& writer, const EntityId& entity) {
    writer.Write(entity.type).Write(entity.instance).Write(entity.container);
}

Pdr EncodeAssociation(const Association& association) {
    PayloadWriter writer;
    writer.Write(association.containerId)
        .Write(static_cast<std::uint8_t>(association.logical ? 1 : 0));
    WriteEntity(writer, association.container);
    writer.Write(static_cast<std::uint8_t>(association.contained.size()));
    for (const auto& entity : association.contained) {
        WriteEntity(writer, entity);
    }
    return {PdrType::EntityAssociation, writer.Finish()};
}

} // namespace simulator
