// SPDX-License-Identifier: Apache-2.0
/** One entry of the endpoint table, as far as discovery looks at it. */
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vantric {

/** Values of EndPointEntry::slotType. */
enum SlotType : std::uint8_t { SLOT_TYPE_CARD = 0, SLOT_TYPE_EMBEDDED = 4 };

/** Values of EndPointEntry::endPointType that are served. */
enum EndPointType : std::uint8_t {
    END_POINT_TYPE_PCI = 2,
    END_POINT_TYPE_ACCELERATOR = 13,
    END_POINT_TYPE_BRIDGE = 25,
};

struct EndPointEntry {
    std::uint8_t endPointType = 0;
    std::uint8_t i2c = 0; ///< non-zero: reached over I2C
    std::uint8_t vdm = 0; ///< non-zero: reached over VDM
    std::uint16_t eid = 0;
    std::uint8_t pldm = 0; ///< non-zero: speaks PLDM
    std::string ldidText;  ///< without spaces and control characters
    std::uint8_t slotType = 0;
    std::uint16_t slotNumber = 0;
    std::uint16_t bdf = 0;
    std::uint8_t busAddress = 0;
};

/** Size of an entry in the table, in bytes. */
inline constexpr std::size_t endPointEntrySize = 644;

/** Reads an entry from its bytes; missing bytes read as 0. */
EndPointEntry ReadEndPointEntry(std::span<const std::uint8_t> bytes);

/** The instance number that an LDID text tells: the digit that begins its third piece, and 1 if it
 *  has fewer pieces. Nothing if the third piece doesn't begin with a digit. */
std::optional<std::uint32_t> InstanceNumber(const std::string& ldidText);

/** True for an endpoint that speaks PLDM and stands where this process serves devices. */
bool IsServed(const EndPointEntry& entry);

} // namespace vantric
