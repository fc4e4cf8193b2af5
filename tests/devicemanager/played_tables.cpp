// SPDX-License-Identifier: Apache-2.0
#include "devicemanager/played_tables.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace vantric::test {

PlayedCatalog& Catalog() {
    static PlayedCatalog catalog;
    return catalog;
}

SlotCatalogRecord Record(std::uint16_t slot, std::uint8_t deviceClass, std::uint8_t locator) {
    SlotCatalogRecord record{};
    record.vendorId = 0x15B3;
    record.deviceId = 0x1021;
    record.subVendorId = 0x15B4;
    record.subDeviceId = 0x0040;
    record.locatorType = locator;
    record.slotNumber = slot;
    record.deviceClass = deviceClass;
    record.cpuAffinity = 2;
    return record;
}

PlayedTable::PlayedTable(const std::vector<Entry>& entries)
    : bytes(sizeof(MctpLinkEndPointResp) + entries.size() * sizeof(MctpLinkEndPoint)) {
    const MctpLinkEndPointResp head{1, 0, 2, static_cast<std::uint32_t>(entries.size())};
    std::memcpy(bytes.data(), &head, sizeof(head));
    auto* at = bytes.data() + sizeof(head);
    for (const Entry& entry : entries) {
        MctpLinkEndPoint raw{};
        raw.endPointType = entry.epType;
        raw.i2c = entry.i2c;
        raw.vdm = entry.vdm;
        raw.eid = entry.eid;
        raw.pldm = entry.pldm;
        raw.slotType = entry.slotType;
        raw.slotNumber = entry.slot;
        raw.bdf = 0x0100;
        raw.busAddress = 0x1D;
        std::memcpy(raw.ldid, entry.ldid.data(), std::min(entry.ldid.size(), sizeof(raw.ldid)));
        raw.ldidLength = static_cast<std::uint16_t>(entry.ldid.size());
        std::memcpy(at, &raw, sizeof(raw));
        at += sizeof(raw);
    }
}

} // namespace vantric::test

using vantric::test::Catalog;

std::uint8_t SlotCatalogDeviceInfo(std::uint32_t selector, std::uint32_t* groupCount,
                                   std::uint32_t* recordCapacity, std::uint32_t*) {
    EXPECT_EQ(selector, SLOTCATALOG_ALL);
    *groupCount = static_cast<std::uint32_t>(Catalog().groups.size());
    *recordCapacity = Catalog().recordCapacity;
    return Catalog().infoError;
}

std::uint8_t SlotCatalogDeviceData(std::uint32_t, std::uint32_t group, std::uint8_t* recordCount,
                                   std::uint32_t* capacity, void* records,
                                   std::uint32_t recordsCapacity) {
    if (recordsCapacity < Catalog().leastRoom) {
        return 1;
    }
    const auto& all = Catalog().groups.at(group);
    *capacity = std::min(static_cast<std::uint32_t>(all.size()), recordsCapacity);
    std::copy_n(all.begin(), *capacity, static_cast<SlotCatalogRecord*>(records));
    *recordCount = static_cast<std::uint8_t>(all.size());
    return Catalog().dataError;
}

std::uint16_t SlotCatalogAllDevices(void**) {
    return 0;
}
