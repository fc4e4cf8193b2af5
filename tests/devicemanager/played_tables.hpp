// SPDX-License-Identifier: Apache-2.0
/** The two tables of the platform, played: the PCIe table and the endpoint table.
 *
 * played_tables.cpp takes the place of the PCIe table's library in an executable that is linked
 * with it. */
#pragma once

#include <mctplink.h>
#include <slotcatalog.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vantric::test {

/** The PCIe table: its groups of records, and what its calls return. A test sets it up before
 *  other threads read it. */
struct PlayedCatalog {
    std::vector<std::vector<SlotCatalogRecord>> groups;
    std::uint32_t recordCapacity = 8;
    std::uint8_t infoError = 0;
    std::uint8_t dataError = 0;
    std::uint32_t leastRoom = 0; ///< records; a call with less room fails
};

PlayedCatalog& Catalog();

SlotCatalogRecord Record(std::uint16_t slot, std::uint8_t deviceClass, std::uint8_t locator = 6);

/** An entry of the endpoint table that every rule accepts; a test bends what it is about. */
struct Entry {
    std::uint16_t slot = 3;
    std::uint16_t eid = 9;
    std::uint8_t slotType = 0;
    std::uint8_t epType = 2;
    std::uint8_t pldm = 1;
    std::uint8_t i2c = 0;
    std::uint8_t vdm = 1;
    std::string ldid = "NIC.Slot.3-1-1";
};

/** An endpoint table, as it is delivered. */
class PlayedTable {
public:
    explicit PlayedTable(const std::vector<Entry>& entries);

    /** Valid as long as this. */
    const MctpLinkEndPointResp* Delivered() const {
        return reinterpret_cast<const MctpLinkEndPointResp*>(bytes.data());
    }

private:
    std::vector<std::uint8_t> bytes;
};

} // namespace vantric::test
