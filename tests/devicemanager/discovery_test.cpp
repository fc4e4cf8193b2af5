/** From the bytes of an endpoint table and of the PCIe table to the devices that they show. */
#include "devicemanager/device_manager.hpp"
#include "devicemanager/end_point_entry.hpp"

#include <slotcatalog.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// The played PCIe table: its groups of records, and what its calls return.
struct PlayedCatalog {
    std::vector<std::vector<SlotCatalogRecord>> groups;
    std::uint32_t recordCapacity = 4;
    std::uint8_t infoError = 0;
    std::uint8_t dataError = 0;
};

PlayedCatalog& Catalog() {
    static PlayedCatalog catalog;
    return catalog;
}

} // namespace

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
    const auto& all = Catalog().groups.at(group);
    const auto count = std::min<std::size_t>(all.size(), recordsCapacity);
    std::copy_n(all.begin(), count, static_cast<SlotCatalogRecord*>(records));
    *recordCount = static_cast<std::uint8_t>(all.size());
    *capacity = static_cast<std::uint32_t>(count);
    return Catalog().dataError;
}

std::uint16_t SlotCatalogAllDevices(void** entries) {
    *entries = nullptr;
    return 0;
}

namespace vantric {
namespace {

SlotCatalogRecord Record(std::uint16_t slot, std::uint8_t deviceClass, std::uint8_t locator = 6) {
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

/** An entry that every rule accepts; a test bends what it is about. */
struct Entry {
    std::uint16_t slot = 3;
    std::uint16_t eid = 9;
    std::uint8_t slotType = 0;
    std::uint8_t epType = 2;
    std::uint8_t pldm = 1;
    std::uint8_t i2c = 0;
    std::uint8_t vdm = 1;
    std::string ldid = "NIC.Slot.3-1-1";
    std::uint16_t bdf = 0x0100;
};

std::vector<std::uint8_t> Table(const std::vector<Entry>& entries) {
    std::vector<std::uint8_t> bytes(sizeof(MctpLinkEndPointResp) +
                                    entries.size() * sizeof(MctpLinkEndPoint));
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
        raw.bdf = entry.bdf;
        raw.busAddress = 0x1D;
        std::memcpy(raw.ldid, entry.ldid.data(), std::min(entry.ldid.size(), sizeof(raw.ldid)));
        raw.ldidLength = static_cast<std::uint16_t>(entry.ldid.size());
        std::memcpy(at, &raw, sizeof(raw));
        at += sizeof(raw);
    }
    return bytes;
}

/** The devices as one text: LDID=type/slot, then the endpoints as v or i, EID and instance. */
std::string Discover(const std::vector<Entry>& entries) {
    const auto bytes = Table(entries);
    const DeviceManager manager;
    const auto discovered = manager.filterPLDMSupportedDevices(
        reinterpret_cast<const MctpLinkEndPointResp*>(bytes.data()));
    std::ostringstream text;
    for (const auto& [ldid, details] : discovered) {
        text << ldid << '=' << int(details->deviceType) << '/' << details->slotNumber;
        for (const auto& endpoint : details->vdmEIDs) {
            text << " v" << endpoint.eid << '.' << endpoint.instance;
        }
        for (const auto& endpoint : details->i2cEIDs) {
            text << " i" << endpoint.eid << '.' << endpoint.instance;
        }
        text << ';';
    }
    return text.str();
}

class Discovery : public testing::Test {
protected:
    void SetUp() override {
        Catalog() = {};
        Catalog().groups = {
            {Record(1, 1), Record(3, 1)},
            {Record(4, 11), Record(5, 99), Record(5, 3), Record(10, 10), Record(7, 18)},
            {Record(2, 1, 2)},
        };
        Catalog().recordCapacity = 8;
    }
};

struct DiscoveryCase {
    const char* name;
    std::vector<Entry> entries;
    const char* devices;
};

class DiscoveryTable : public Discovery, public testing::WithParamInterface<DiscoveryCase> {};

TEST_P(DiscoveryTable, ShowsDevices) {
    EXPECT_EQ(Discover(GetParam().entries), GetParam().devices);
}

INSTANTIATE_TEST_SUITE_P(
    All, DiscoveryTable,
    testing::Values(
        DiscoveryCase{"Nothing", {}, ""}, DiscoveryCase{"Nic", {{}}, "NIC.Slot.3=1/3 v9.0;"},
        DiscoveryCase{"TwoEndpointsOfOneCard",
                      {{.eid = 9}, {.eid = 12, .i2c = 1, .vdm = 1}},
                      "NIC.Slot.3=1/3 v9.0 i12.0;"},
        DiscoveryCase{"NoMediumMakesARecordWithoutEndpoints", {{.vdm = 0}}, "NIC.Slot.3=1/3;"},
        DiscoveryCase{"ClassesAndTheOrderOfText",
                      {{.slot = 3, .eid = 1},
                       {.slot = 10, .eid = 2},
                       {.slot = 5, .eid = 3},
                       {.slot = 7, .eid = 4}},
                      "CXLMemory.Slot.7=18/7 v4.0;FC.Slot.10=10/10 v2.0;"
                      "InfiniBand.Slot.5=3/5 v3.0;NIC.Slot.3=1/3 v1.0;"},
        DiscoveryCase{"AcceleratorNeedsItsEndpointType",
                      {{.slot = 4, .epType = 13}},
                      "ProcAccelerator.Slot.4-1=11/4 v9.0;"},
        DiscoveryCase{"AcceleratorOfAnotherEndpointType", {{.slot = 4, .epType = 2}}, ""},
        DiscoveryCase{"NotServed", {{.slotType = 1}, {.epType = 3}, {.pldm = 0}, {.slot = 77}}, ""},
        DiscoveryCase{"EmbeddedWithRecord",
                      {{.slot = 2, .slotType = 4, .epType = 25, .ldid = "NIC.Embedded.2-1-1"}},
                      "NIC.Embedded.1=252/1 v9.2;"},
        DiscoveryCase{"EmbeddedWithoutRecordSharesTheEmptyKey",
                      {{.slot = 0, .eid = 1, .slotType = 4, .ldid = "NIC.Embedded.0-1-1"},
                       {.slot = 9, .eid = 2, .slotType = 4, .ldid = "NIC.Embedded.2-1-1"}},
                      "=252/0 v1.0 v2.2;"},
        DiscoveryCase{
            "EmbeddedWithoutRecordAndAnotherType", {{.slot = 0, .slotType = 4, .epType = 13}}, ""},
        DiscoveryCase{"TextWithSpacesAndControls",
                      {{.slot = 2, .slotType = 4, .ldid = " NIC.\tEmbedded.\n2-1-1"}},
                      "NIC.Embedded.1=252/1 v9.2;"},
        DiscoveryCase{"GarbageTextCostsItsEntryOnly",
                      {{.eid = 1, .ldid = "NIC.Slot."},
                       {.eid = 2, .ldid = "a.b.x"},
                       {.eid = 3, .ldid = std::string(600, '\x01')},
                       {.eid = 4, .ldid = "...\xFF\xFE"},
                       {.slot = 1, .eid = 5}},
                      "NIC.Slot.1=1/1 v5.0;NIC.Slot.3=1/3 v3.0;"}),
    [](const auto& info) { return info.param.name; });

TEST_F(Discovery, TakesTheIdentityFromTheRecord) {
    const auto bytes = Table({{}});
    const DeviceManager manager;
    const auto discovered = manager.filterPLDMSupportedDevices(
        reinterpret_cast<const MctpLinkEndPointResp*>(bytes.data()));
    const DeviceDetails& details = *discovered.at("NIC.Slot.3");
    EXPECT_EQ(details.identity.vendorId, 0x15B3);
    EXPECT_EQ(details.identity.deviceId, 0x1021);
    EXPECT_EQ(details.identity.subVendorId, 0x15B4);
    EXPECT_EQ(details.identity.subDeviceId, 0x0040);
    EXPECT_EQ(details.cpuAffinity, 2);
    EXPECT_EQ(details.busAddress, 0x1D);
    EXPECT_EQ(details.bdf, 0x0100);
}

TEST_F(Discovery, AFailingCatalogLosesTheEntry) {
    Catalog().infoError = 1;
    EXPECT_EQ(Discover({{}}), "");
    Catalog().infoError = 0;
    Catalog().dataError = 3;
    EXPECT_EQ(Discover({{}}), "");
    Catalog().dataError = 0;
    Catalog().recordCapacity = 0;
    EXPECT_EQ(Discover({{}}), "");
}

TEST_F(Discovery, AnEmptyGroupEndsTheSearch) {
    Catalog().groups.insert(Catalog().groups.begin(), std::vector<SlotCatalogRecord>{});
    EXPECT_EQ(Discover({{}}), "");
}

TEST_F(Discovery, ClaimsOfTheCatalogAllocateAndReadNoMoreThanTheBuffer) {
    Catalog().recordCapacity = 0xFFFFFFFF;
    EXPECT_EQ(Discover({{}}), "NIC.Slot.3=1/3 v9.0;");
    Catalog().recordCapacity = 1;
    EXPECT_EQ(Discover({{.slot = 1}}), "NIC.Slot.1=1/1 v9.0;") << "a count above the buffer";
}

TEST(InstanceNumber, IsTheDigitThatBeginsTheThirdPiece) {
    EXPECT_EQ(InstanceNumber("NIC.Embedded.2-1-1"), 2U);
    EXPECT_EQ(InstanceNumber("NIC.Slot.12-1-1"), 1U);
    EXPECT_EQ(InstanceNumber("NIC.Embedded.0-1-1"), 0U);
    EXPECT_EQ(InstanceNumber("NIC"), 1U);
    EXPECT_EQ(InstanceNumber("NIC.Slot"), 1U);
    EXPECT_EQ(InstanceNumber(""), 1U);
    EXPECT_EQ(InstanceNumber("NIC.Slot."), std::nullopt);
    EXPECT_EQ(InstanceNumber("a..b"), std::nullopt);
    EXPECT_EQ(InstanceNumber("a.b..c"), std::nullopt);
}

} // namespace
} // namespace vantric
