/** Entity types that have a meaning of their own in modeling (DSP0249). */
#pragma once

#include <cstdint>

namespace vantric {

enum EntityType : std::uint16_t {
    ENTITY_COMMUNICATION_CHANNEL = 6,
    ENTITY_SYSTEM_MANAGEMENT_MODULE = 63,
    ENTITY_ADD_IN_CARD = 68,
    ENTITY_NETWORK_CONTROLLER = 144,
    ENTITY_ACCELERATOR = 149,
    ENTITY_CABLE = 187,
    ENTITY_ETHERNET = 300,
    ENTITY_FIBRE_CHANNEL = 302,
    ENTITY_LOGICAL_ACCELERATOR = 32917, ///< the highest bit marks a logical entity
};

/** Whether the type is one of the connector types. */
constexpr bool IsConnector(std::uint16_t entityType) {
    return entityType >= 200 && entityType <= 299;
}

/** Whether the type is a network port: ethernet, InfiniBand or Fibre Channel. */
constexpr bool IsPort(std::uint16_t entityType) {
    return entityType >= ENTITY_ETHERNET && entityType <= ENTITY_FIBRE_CHANNEL;
}

} // namespace vantric
