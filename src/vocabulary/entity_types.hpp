// SPDX-License-Identifier: Apache-2.0
/** Entity types (DSP0249): those that have a word, and the ranges with a meaning of their own. */
#pragma once

#include <cstdint>

namespace vantric {

enum EntityType : std::uint16_t {
    ENTITY_COMMUNICATION_CHANNEL = 6,
    ENTITY_BOARD = 60,
    ENTITY_SYSTEM_MANAGEMENT_MODULE = 63,
    ENTITY_MEMORY_BOARD = 65,
    ENTITY_MEMORY_MODULE = 66,
    ENTITY_ADD_IN_CARD = 68,
    ENTITY_PROCESSOR_MEMORY_MODULE = 79,
    ENTITY_IO_MODULE = 80,
    ENTITY_MEMORY_CONTROLLER = 143,
    ENTITY_NETWORK_CONTROLLER = 144,
    ENTITY_IO_CONTROLLER = 145,
    ENTITY_FPGA = 148,
    ENTITY_ACCELERATOR = 149,
    ENTITY_GPU = 152,
    ENTITY_CONNECTOR = 185, ///< a connector of no known type, and none of IsConnector
    ENTITY_CABLE = 187,
    ENTITY_RJ45 = 200,
    ENTITY_XFP = 201,
    ENTITY_SFP_8079 = 202,
    ENTITY_SFP10_8083 = 203,
    ENTITY_SFP16_8081 = 205,
    ENTITY_SFP28_8402 = 206,
    ENTITY_SFP_PLUS_8432 = 207,
    ENTITY_SFP_DD = 208,
    ENTITY_CSFP = 209,
    ENTITY_QSFP = 210,
    ENTITY_QSFP28 = 211,
    ENTITY_QSFP_PLUS = 212,
    ENTITY_QSFP_DD = 213,
    ENTITY_OSFP = 214,
    ENTITY_DSFP = 215,
    ENTITY_OIF_ELSFP = 290,
    ENTITY_MPO = 291,
    ENTITY_MMC = 292,
    ENTITY_UNKNOWN_CONNECTOR = 299,
    ENTITY_ETHERNET = 300,
    ENTITY_INFINIBAND = 301,
    ENTITY_FIBRE_CHANNEL = 302,
    ENTITY_OMNIPATH = 303,
    ENTITY_OEM = 24576,
    ENTITY_LOGICAL_ADD_IN_CARD = 32836,
    ENTITY_LOGICAL_ACCELERATOR = 32917,
};

/** Whether the type is one of the connector types. */
constexpr bool IsConnector(std::uint16_t entityType) {
    return entityType >= ENTITY_RJ45 && entityType <= ENTITY_UNKNOWN_CONNECTOR;
}

/** Whether the type is a network port: ethernet, InfiniBand or Fibre Channel. */
constexpr bool IsPort(std::uint16_t entityType) {
    return entityType >= ENTITY_ETHERNET && entityType <= ENTITY_FIBRE_CHANNEL;
}

/** Whether the type is a chip of some kind: processors, controllers, bridges. */
constexpr bool IsChip(std::uint16_t entityType) {
    return entityType >= 135 && entityType <= 155;
}

/** Whether the type is that of a logical entity, which the highest bit marks. */
constexpr bool IsLogical(std::uint16_t entityType) {
    return (entityType & 0x8000) != 0;
}

} // namespace vantric
