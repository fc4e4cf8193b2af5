// SPDX-License-Identifier: Apache-2.0
/** What the board file tells of a board. */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace board {

/** How an endpoint is reached. */
enum class Medium { VDM, I2C };

/** Where an endpoint stands. It is known by its UUID, or else by network and EID. */
struct PlacedEndpoint {
    std::string uuid; ///< in lower case; empty for one that is known by network and EID
    std::uint32_t network = 0;
    std::uint8_t eid = 0;
    std::uint16_t slot = 0;
    bool embedded = false;
    Medium medium = Medium::VDM;
    std::uint8_t endPointType = 0; ///< as MctpLinkEndPoint has it
    std::uint16_t bdf = 0;
    std::uint8_t busAddress = 0;
    std::string ldid;
};

/** The PCI ids of a device. */
struct PciIds {
    std::uint16_t vendor = 0;
    std::uint16_t device = 0;
    std::uint16_t subVendor = 0;
    std::uint16_t subDevice = 0;

    bool operator==(const PciIds&) const = default;
};

/** What stands in a slot. */
struct SlotDevice {
    std::uint16_t slot = 0;
    bool embedded = false;
    std::uint8_t deviceClass = 0; ///< as SlotCatalogRecord has it
    PciIds ids;
    std::uint8_t cpuAffinity = 0;
};

/** An accelerator, and those of its sensors that count. */
struct Accelerator {
    PciIds ids;
    std::vector<std::uint16_t> sensors; ///< 1 to 4
};

struct Board {
    std::vector<PlacedEndpoint> endpoints;
    std::vector<SlotDevice> slots;
    std::vector<Accelerator> accelerators;
};

} // namespace board
