// SPDX-License-Identifier: Apache-2.0
/** Cards and their endpoints. */
#pragma once

#include "scenario/terminus.hpp"

namespace simulator {

/** By what an endpoint is reached. */
enum class Medium { Vdm, I2c, None };

struct EndPoint {
    std::uint16_t eid = 0;
    Medium medium = Medium::Vdm;
    std::uint16_t bdf = 0;
    std::uint8_t busAddress = 0;
    std::string udid;                        /**< as the address service tells it */
    std::vector<std::uint8_t> ldid;          /**< any bytes */
    std::optional<std::uint16_t> ldidLength; /**< claimed instead of the true one */
    std::uint8_t endPointType = 2;
    std::uint8_t slotType = 0;
    std::uint16_t slot = 0;
    bool pldm = true;
    TerminusDescription terminus;
};

struct PciIdentity {
    std::uint16_t vendor = 0;
    std::uint16_t device = 0;
    std::uint16_t subVendor = 0;
    std::uint16_t subDevice = 0;
};

struct Card {
    std::uint16_t slot = 0;
    std::string kind;
    PciIdentity pci;
    std::uint8_t cpuAffinity = 0;
    std::uint8_t deviceClass = 1;
    std::uint8_t locatorType = 6;
    std::uint32_t group = 0; /**< of the PCIe table */
    bool inPcieTable = true;
    bool plugged = true;
    std::string model; /**< as the platform's FRU service tells it */
    std::vector<EndPoint> endPoints;
};

} // namespace simulator
