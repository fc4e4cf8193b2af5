// SPDX-License-Identifier: Apache-2.0
/** From the bytes of an endpoint table and of the PCIe table to the devices that they show. */
#include "devicemanager/device_manager.hpp"
#include "devicemanager/end_point_entry.hpp"
#include "devicemanager/played_tables.hpp"
#include "support/captured_log.hpp"
#include "support/publisher_recorder.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace vantric::test {
namespace {

using Texts = std::vector<std::string>;

class Discovery : public testing::Test {
protected:
    Discovery() {
        Catalog() = {};
        Catalog().groups = {
            {Record(1, 1), Record(3, 1)},
            {Record(4, 11), Record(5, 99), Record(5, 3), Record(10, 10), Record(7, 18)},
            {Record(2, 1, 2)},
        };
    }

    DeviceManager::DiscoveredMap Show(const std::vector<Entry>& entries) const {
        return manager.filterPLDMSupportedDevices(PlayedTable(entries).Delivered());
    }

    /** The devices as one text: LDID=type/slot, then the endpoints as v or i, EID and instance. */
    std::string Discover(const std::vector<Entry>& entries) const {
        std::ostringstream text;
        for (const auto& [ldid, details] : Show(entries)) {
            text << ldid << '=' << int(details.deviceType) << '/' << details.slotNumber;
            for (const auto& endpoint : details.vdmEIDs) {
                text << " v" << endpoint.eid << '.' << endpoint.instance;
            }
            for (const auto& endpoint : details.i2cEIDs) {
                text << " i" << endpoint.eid << '.' << endpoint.instance;
            }
            text << ';';
        }
        return text.str();
    }

    const DeviceManager manager{RecordingDoors()};
};

TEST_F(Discovery, ShowsDevices) {
    const struct {
        const char* name;
        std::vector<Entry> entries;
        const char* devices;
    } rows[] = {
        {"nothing", {}, ""},
        {"two endpoints of one card",
         {{.eid = 9}, {.eid = 12, .i2c = 1, .vdm = 1}},
         "NIC.Slot.3=1/3 v9.0 i12.0;"},
        {"no medium makes a device without endpoints", {{.vdm = 0}}, "NIC.Slot.3=1/3;"},
        {"classes and the order of text",
         {{.slot = 3}, {.slot = 10}, {.slot = 5}, {.slot = 7}, {.slot = 4, .epType = 13}},
         "CXLMemory.Slot.7=18/7 v9.0;FC.Slot.10=10/10 v9.0;InfiniBand.Slot.5=3/5 v9.0;"
         "NIC.Slot.3=1/3 v9.0;ProcAccelerator.Slot.4-1=11/4 v9.0;"},
        {"an accelerator needs its endpoint type", {{.slot = 4, .epType = 2}}, ""},
        {"not served", {{.slotType = 1}, {.epType = 3}, {.pldm = 0}, {.slot = 77}}, ""},
        {"embedded with a record",
         {{.slot = 2, .slotType = 4, .epType = 25, .ldid = " NIC.\tEmbedded.\n2-1-1"}},
         "NIC.Embedded.1=252/1 v9.2;"},
        {"those without a record share the empty key",
         {{.slot = 0, .eid = 1, .slotType = 4, .ldid = "NIC.Embedded.0-1-1"},
          {.slot = 9, .eid = 2, .slotType = 4, .ldid = "NIC.Embedded.2-1-1"},
          {.slot = 0, .eid = 3, .slotType = 4, .epType = 13}},
         "=252/0 v1.0 v2.2;"},
        {"a bad text costs its entry only",
         {{.eid = 1, .ldid = "NIC.Slot."},
          {.eid = 2, .ldid = "a.b.x"},
          {.eid = 3, .ldid = std::string(600, '\x01')},
          {.eid = 4, .ldid = "...\xFF\xFE"},
          {.slot = 1, .eid = 5}},
         "NIC.Slot.1=1/1 v5.0;NIC.Slot.3=1/3 v3.0;"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Discover(row.entries), row.devices) << row.name;
    }
}

TEST_F(Discovery, TakesTheIdentityFromTheRecord) {
    const auto details = Show({{}}).at("NIC.Slot.3");
    EXPECT_EQ(details.identity.vendorId, 0x15B3);
    EXPECT_EQ(details.identity.deviceId, 0x1021);
    EXPECT_EQ(details.identity.subVendorId, 0x15B4);
    EXPECT_EQ(details.identity.subDeviceId, 0x0040);
    EXPECT_EQ(details.cpuAffinity, 2);
    EXPECT_EQ(details.busAddress, 0x1D);
    EXPECT_EQ(details.bdf, 0x0100);
}

TEST_F(Discovery, SaysWhatItSees) {
    const auto seen = [](const std::string& numbers, const std::string& ldid = "NIC.Slot.3-1-1") {
        return "4 SlotNu" + numbers + ":LDIDSTR[" + ldid + "]\n";
    };
    const std::string bits = ":PLDM[1]:EID[9]:I2C[0]:VDM[1]";
    const std::string nic = seen("[3]:SlotType[0]:EPType[2]" + bits);
    const std::string ids = "4 DID = 0x1021, SVID = 0x15B4, VID = 0x15B3, SDID = 0x0040\n";
    const std::string lost = "1 getPCIDeviceIDForSlot() failed error\n";
    const struct {
        Entry entry;
        Texts lines;
        std::uint8_t infoError = 0;
        std::uint8_t dataError = 0;
        std::uint32_t capacity = 8;
    } rows[] = {
        {{}, {nic, "1 SlotCatalogDeviceInfo() failed error = 4\n", lost}, 4},
        {{}, {nic, "1 SlotCatalogDeviceInfo() failed error = 0\n", lost}, 0, 0, 0},
        {{}, {nic, "1 SlotCatalogDeviceData() failed error = 3\n", lost}, 0, 3},
        {{.slot = 5},
         {seen("[5]:SlotType[0]:EPType[2]" + bits), ids,
          "1 Device type [99] is not supported for slot 5\n", ids}},
        {{.slot = 4}, {seen("[4]:SlotType[0]:EPType[2]" + bits), ids, lost}},
        {{.slotType = 1, .epType = 25}, {seen("[3]:SlotType[1]:EPType[25]" + bits)}},
        {{.ldid = "a.b.x"},
         {seen("[3]:SlotType[0]:EPType[2]" + bits, "a.b.x"),
          "2 No instance number in the LDID text of EID = 9\n"}},
        {{.slot = 2, .eid = 300, .slotType = 4, .pldm = 7, .i2c = 8, .vdm = 5, .ldid = " N\t.\n2"},
         {seen("[2]:SlotType[4]:EPType[2]:PLDM[7]:EID[300]:I2C[8]:VDM[5]", "N.2"), ids}},
    };
    for (const auto& row : rows) {
        Catalog().infoError = row.infoError;
        Catalog().dataError = row.dataError;
        Catalog().recordCapacity = row.capacity;
        const CapturedLog log;
        EXPECT_EQ(Discover({row.entry}).empty(), row.lines.back() != ids);
        Texts lines;
        for (const auto& line : log.Lines()) {
            lines.push_back(std::to_string(line.level) + " " + line.message);
        }
        EXPECT_EQ(lines, row.lines);
    }
}

TEST_F(Discovery, TheCatalogGetsTheRoomThatItAnnouncesUnlessThatIsAbsurd) {
    Catalog().recordCapacity = Catalog().leastRoom = 300;
    EXPECT_EQ(Discover({{}}), "NIC.Slot.3=1/3 v9.0;");
    Catalog().leastRoom = 0;
    Catalog().recordCapacity = 0xFFFFFFFF;
    EXPECT_EQ(Discover({{}}), "NIC.Slot.3=1/3 v9.0;");
    Catalog().recordCapacity = 1;
    EXPECT_EQ(Discover({{.slot = 1}}), "NIC.Slot.1=1/1 v9.0;") << "a count above the buffer";
    Catalog().groups.insert(Catalog().groups.begin(), std::vector<SlotCatalogRecord>{});
    EXPECT_EQ(Discover({{.slot = 1}}), "") << "an empty group ends the search";
}

TEST(InstanceNumber, IsTheDigitThatBeginsTheThirdPiece) {
    const std::pair<const char*, std::optional<std::uint32_t>> rows[] = {
        {"NIC.Embedded.2-1-1", 2}, {"NIC.Slot.12-1-1", 1}, {"NIC.Embedded.0-1-1", 0},
        {"NIC.Slot.9", 9},         {"NIC.Slot", 1},        {"", 1},
        {"NIC.Slot.", {}},         {"a..b", {}},           {"a.b..c", {}},
    };
    for (const auto& [text, number] : rows) {
        EXPECT_EQ(InstanceNumber(text), number) << text;
    }
}

} // namespace
} // namespace vantric::test
