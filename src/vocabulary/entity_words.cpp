// SPDX-License-Identifier: Apache-2.0
#include "vocabulary/entity_types.hpp"
#include "vocabulary/vocabulary.hpp"

namespace vantric {

const std::map<std::uint16_t, std::string> entityWords{
    {ENTITY_COMMUNICATION_CHANNEL, "communication_channel"},
    {ENTITY_BOARD, "board"},
    {ENTITY_SYSTEM_MANAGEMENT_MODULE, "system_mgmt_module"},
    {ENTITY_MEMORY_BOARD, "memory_board"},
    {ENTITY_MEMORY_MODULE, "memory_module"},
    {ENTITY_ADD_IN_CARD, "add_in_card"},
    {ENTITY_PROCESSOR_MEMORY_MODULE, "processor_memory_module"},
    {ENTITY_IO_MODULE, "io_module"},
    {ENTITY_MEMORY_CONTROLLER, "memory_controller"},
    {ENTITY_NETWORK_CONTROLLER, "networkcontroller"},
    {ENTITY_IO_CONTROLLER, "io_controller"},
    {ENTITY_FPGA, "fpga"},
    {ENTITY_ACCELERATOR, "accelerator"},
    {ENTITY_GPU, "GPU"},
    {ENTITY_CONNECTOR, "connector"},
    {ENTITY_CABLE, "cable"},
    {ENTITY_RJ45, "rj45"},
    {ENTITY_XFP, "xfp"},
    {ENTITY_SFP_8079, "sfp_8079"},
    {ENTITY_SFP10_8083, "sf10_8083"},
    {ENTITY_SFP16_8081, "sf16_8081"},
    {ENTITY_SFP28_8402, "sf28_8402"},
    {ENTITY_SFP_PLUS_8432, "sfp_plus_8432"},
    {ENTITY_SFP_DD, "sfpdd"},
    {ENTITY_CSFP, "csfp"},
    {ENTITY_QSFP, "qsfp"},
    {ENTITY_QSFP28, "qsf28"},
    {ENTITY_QSFP_PLUS, "qsfp_plus"},
    {ENTITY_QSFP_DD, "qsfdd"},
    {ENTITY_OSFP, "osfp"},
    {ENTITY_DSFP, "dsfp"},
    {ENTITY_OIF_ELSFP, "oif_elsfp"},
    {ENTITY_MPO, "mpo"},
    {ENTITY_MMC, "mmc"},
    {ENTITY_UNKNOWN_CONNECTOR, "unkknown_connector_type"},
    {ENTITY_ETHERNET, "ethernet"},
    {ENTITY_INFINIBAND, "infiniband"},
    {ENTITY_FIBRE_CHANNEL, "fibre_channel"},
    {ENTITY_OMNIPATH, "omnipath"},
    {ENTITY_OEM, "oem"},
    {ENTITY_LOGICAL_ADD_IN_CARD, "add_in_card_logical"},
    {ENTITY_LOGICAL_ACCELERATOR, "accelerator_logical"},
};

} // namespace vantric
