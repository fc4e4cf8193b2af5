// SPDX-License-Identifier: Apache-2.0
#include "devicemanager/end_point_entry.hpp"

#include "common/byte_reader.hpp"

#include <mctplink.h>

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace vantric {

static_assert(endPointEntrySize == sizeof(MctpLinkEndPoint));

namespace {

std::string CleanText(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t character : bytes) {
        if (std::isspace(character) == 0 && std::iscntrl(character) == 0) {
            text += static_cast<char>(character);
        }
    }
    return text;
}

} // namespace

EndPointEntry ReadEndPointEntry(std::span<const std::uint8_t> bytes) {
    ByteReader reader(bytes);
    EndPointEntry entry;
    entry.endPointType = reader.At<std::uint8_t>(offsetof(MctpLinkEndPoint, endPointType));
    entry.i2c = reader.At<std::uint8_t>(offsetof(MctpLinkEndPoint, i2c));
    entry.vdm = reader.At<std::uint8_t>(offsetof(MctpLinkEndPoint, vdm));
    entry.eid = reader.At<std::uint16_t>(offsetof(MctpLinkEndPoint, eid));
    entry.pldm = reader.At<std::uint8_t>(offsetof(MctpLinkEndPoint, pldm));
    entry.slotType = reader.At<std::uint8_t>(offsetof(MctpLinkEndPoint, slotType));
    entry.slotNumber = reader.At<std::uint16_t>(offsetof(MctpLinkEndPoint, slotNumber));
    entry.bdf = reader.At<std::uint16_t>(offsetof(MctpLinkEndPoint, bdf));
    entry.busAddress = reader.At<std::uint8_t>(offsetof(MctpLinkEndPoint, busAddress));

    const auto length = reader.At<std::uint16_t>(offsetof(MctpLinkEndPoint, ldidLength));
    reader.Seek(offsetof(MctpLinkEndPoint, ldid));
    entry.ldidText = CleanText(reader.Take(
        std::min<std::size_t>(length, static_cast<std::size_t>(MCTPLINK_LDID_CAPACITY))));
    return entry;
}

std::optional<std::uint32_t> InstanceNumber(const std::string& ldidText) {
    const auto first = ldidText.find('.');
    const auto second =
        first == std::string::npos ? std::string::npos : ldidText.find('.', first + 1);
    if (second == std::string::npos) {
        return 1;
    }
    if (second + 1 == ldidText.size()) {
        return std::nullopt;
    }
    const char digit = ldidText[second + 1];
    if (digit < '0' || digit > '9') {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(digit - '0');
}

bool IsServed(const EndPointEntry& entry) {
    const bool slotServed =
        entry.slotType == SLOT_TYPE_CARD || entry.slotType == SLOT_TYPE_EMBEDDED;
    const bool typeServed = entry.endPointType == END_POINT_TYPE_PCI ||
                            entry.endPointType == END_POINT_TYPE_ACCELERATOR ||
                            entry.endPointType == END_POINT_TYPE_BRIDGE;
    return slotServed && typeServed && entry.pldm != 0;
}

} // namespace vantric
