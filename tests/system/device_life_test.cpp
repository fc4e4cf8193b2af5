/** Cards fall silent, change their endpoints, go and come back; the host goes off and on. */
#include "system/played_server.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace vantric::test {
namespace {

constexpr auto valueInterface = "xyz.openbmc_project.Sensor.Value";
constexpr auto powerOffLine = "EVENT_POWER_OFF Received deleting the devices";
constexpr auto thermalInterface = "com.korv.bmc.Thermal.ThermalSensor";
constexpr auto oneController = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_1";
constexpr auto firstOfTwo = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_ctrl1_1";
constexpr auto secondOfTwo = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_ctrl2_1";

/** A card with the given endpoints and one sensor. */
std::string Entry(int slot, const std::string& endpoints) {
    return "  - slot: " + std::to_string(slot) + "\n    kind: nic\n    endpoints:\n" + endpoints +
           "    sensors:\n      - {id: 1, unit: celsius, value: 50, "
           "entity: {type: network-controller}}\n";
}

/** A card in slot 3, alone. */
std::string Card(const std::string& endpoints) {
    return "cards:\n" + Entry(3, endpoints);
}

/** Cards in the slots 1 to 6, with EIDs 11 to 16 over VDM and 21 to 26 over I2C. */
std::string SixCards() {
    std::string text = "platform-services: true\ncards:\n";
    for (int slot = 1; slot <= 6; ++slot) {
        text += Entry(slot, "      - {eid: 1" + std::to_string(slot) +
                                ", medium: vdm}\n      - {eid: 2" + std::to_string(slot) +
                                ", medium: i2c}\n");
    }
    return text;
}

std::string SensorOf(int slot) {
    return "/xyz/openbmc_project/sensors/temperature/NIC_Slot_" + std::to_string(slot) +
           "_sensorid_1";
}

/** Waits until all six cards but one show their values, and that one shows none. Returns their
 *  slots by the instances of their sensors. */
std::map<std::string, int> WaitForAllBut(PlayedServer& server, int missing) {
    std::map<std::string, int> instances;
    EXPECT_TRUE(server.WaitForObjects([&](const PublishedObjects& objects) {
        instances.clear();
        for (int slot = 1; slot <= 6; ++slot) {
            const auto sensor = objects.find(SensorOf(slot));
            const bool shown =
                sensor != objects.end() && sensor->second.at(valueInterface).at("Value") == "50";
            if (shown == (slot == missing)) {
                return false;
            }
            if (shown) {
                instances[sensor->second.at(thermalInterface).at("Instance")] = slot;
            }
        }
        return true;
    }));
    return instances;
}

std::set<std::string> Numbers(const std::map<std::string, int>& instances) {
    std::set<std::string> numbers;
    for (const auto& [number, slot] : instances) {
        numbers.insert(number);
    }
    return numbers;
}

/** The same for all six, only the instances. */
std::set<std::string> WaitForSix(PlayedServer& server) {
    return Numbers(WaitForAllBut(server, 0));
}

const std::set<std::string> firstSix{"151", "152", "153", "154", "155", "156"};

bool WaitForNothing(PlayedServer& server) {
    return server.WaitForObjects([](const PublishedObjects& objects) { return objects.empty(); });
}

/** How many attempts timed out between the last table and the line: one that ran when the table
 *  came, and at most one that began meanwhile, where the device gave way. */
int TimeOutsBehindTheTable(const std::string& log, const std::string& line) {
    const auto table = log.rfind("END_POINT_TABLE_UPDATED");
    return CountOf(log.substr(table, log.find(line) - table), "MCTP Timeout");
}

const std::string vdmAndI2c = "      - {eid: 11, medium: vdm, bdf: 0x3b00}\n"
                              "      - {eid: 12, medium: i2c, bus-address: 0x1d}\n";
const std::string twoVdmTwoI2c = "      - {eid: 21, medium: vdm, bdf: 0x3b01}\n"
                                 "      - {eid: 11, medium: vdm, bdf: 0x3b00}\n"
                                 "      - {eid: 12, medium: i2c, bus-address: 0x1d}\n"
                                 "      - {eid: 22, medium: i2c, bus-address: 0x1e}\n";

TEST(DeviceLife, ASilentVdmEndpointIsLeftForI2c) {
    PlayedServer server(Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"set", "12", "1", "55"});
    server.Simctl({"silence", "11"});
    // Over I2C from here on: the value is that of the other endpoint.
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "55"));
    EXPECT_TRUE(server.WaitForLog("Use I2C EIDs for slot 3"));
    EXPECT_TRUE(server.WaitForLog("Updating EID = 12 for slot 3"));
}

TEST(DeviceLife, ANewTableBringsItBackToVdm) {
    PlayedServer server(Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"set", "12", "1", "55"});
    server.Simctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "55"));
    server.Simctl({"unsilence", "11"});
    server.Simctl({"table"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
}

TEST(DeviceLife, TwoControllersAreOrderedByTheirAddressAndMakeANewInventoryOnI2c) {
    PlayedServer server(Card(twoVdmTwoI2c));
    ASSERT_TRUE(server.WaitForProperty(firstOfTwo, valueInterface, "Value", "50"));
    server.Simctl({"set", "21", "1", "60"});
    EXPECT_TRUE(server.WaitForProperty(secondOfTwo, valueInterface, "Value", "60"));
    server.Simctl({"set", "22", "1", "77"});
    server.Simctl({"silence", "11"});
    EXPECT_TRUE(server.WaitForLog("Inventory successful for slot 3", 2));
    EXPECT_TRUE(server.WaitForProperty(secondOfTwo, valueInterface, "Value", "77"));
}

TEST(DeviceLife, WithoutI2cItWaitsAndTriesAgain) {
    PlayedServer server(Card("      - {eid: 11, medium: vdm}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("mI2C_EIDs vector is empty for slot 3"));
    ASSERT_TRUE(server.WaitForLog("Device in Slot 3 waiting 115 seconds"));
    server.Simctl({"unsilence", "11"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
}

TEST(DeviceLife, ATableEndsTheWait) {
    PlayedServer server(Card("      - {eid: 11, medium: vdm}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("Device in Slot 3 waiting 115 seconds"));
    server.Simctl({"move", "11", "31"});
    server.Simctl({"unsilence", "31"});
    server.Simctl({"table"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    EXPECT_TRUE(server.WaitForLog("Updating EID = 31 for slot 3"));
}

TEST(DeviceLife, ATableThatComesInATimeOutIsTakenAtOnce) {
    PlayedServer server(Card("      - {eid: 12, medium: i2c, bus-address: 0x1d}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"silence", "12"});
    // Over I2C a failed cycle is tolerated and begins anew at once: the table must get its turn.
    ASSERT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 11 and EID = 12", 2));
    server.Simctl({"move", "12", "32"});
    server.Simctl({"unsilence", "32"});
    server.Simctl({"table"});
    ASSERT_TRUE(server.WaitForLog("Updating EID = 32 for slot 3"));
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    EXPECT_LE(TimeOutsBehindTheTable(server.Log(), "Updating EID = 32"), 2);
}

TEST(DeviceLife, ATableDuringAnInventoryLeadsToANewOneOnItsEndpoints) {
    PlayedServer server(Card(twoVdmTwoI2c));
    ASSERT_TRUE(server.WaitForProperty(firstOfTwo, valueInterface, "Value", "50"));
    server.Simctl({"silence", "12"});
    server.Simctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("Use I2C EIDs for slot 3"));
    server.Simctl({"recover", "11"});
    ASSERT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 4 and EID = 12"));
    server.Simctl({"move", "21", "31"}); // its table leads back to VDM
    ASSERT_TRUE(server.WaitForLog("Updating EID = 31 for slot 3"));
    EXPECT_LE(TimeOutsBehindTheTable(server.Log(), "Updating EID = 31"), 2);
    server.Simctl({"set", "31", "1", "60"});
    EXPECT_TRUE(server.WaitForProperty(secondOfTwo, valueInterface, "Value", "60"));
    EXPECT_EQ(CountOf(server.Log(), "Inventory successful for slot 3"), 2);
    EXPECT_EQ(CountOf(server.Log(), "PLDM Inventory failed"), 0);
}

TEST(DeviceLife, ATableEndsTheStandstillAfterAFailedInventory) {
    PlayedServer server(SixCards());
    WaitForSix(server);
    server.Simctl({"refuse", "13"});
    server.Simctl({"refuse", "23"});
    server.Simctl({"pull", "3"});
    server.Simctl({"plug", "3"});
    ASSERT_TRUE(server.WaitForLog("PLDM Inventory failed for slot 3", 2)); // over VDM and I2C
    server.Simctl({"accept", "13"});
    server.Simctl({"table"});
    WaitForSix(server);
}

TEST(DeviceLife, ControllersOverI2cAreOrderedByTheirNames) {
    PlayedServer server("platform-services: true\n" +
                        Card("      - {eid: 12, medium: i2c, bus-address: 0x1d, udid: second}\n"
                             "      - {eid: 22, medium: i2c, bus-address: 0x1e, udid: first}\n"));
    ASSERT_TRUE(server.WaitForProperty(secondOfTwo, valueInterface, "Value", "50"));
    server.Simctl({"set", "22", "1", "77"});
    EXPECT_TRUE(server.WaitForProperty(firstOfTwo, valueInterface, "Value", "77"));
}

TEST(DeviceLife, ATableTakesADeviceAwayThatSitsInATimeOut) {
    PlayedServer server(SixCards());
    WaitForSix(server);
    server.Simctl({"silence", "13"});
    ASSERT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 11 and EID = 13"));
    server.Simctl({"pull", "3"});
    ASSERT_TRUE(server.WaitForObjects(
        [](const PublishedObjects& objects) { return !objects.contains(SensorOf(3)); }));
    server.Simctl({"set", "14", "1", "60"});
    EXPECT_TRUE(server.WaitForProperty(SensorOf(4), valueInterface, "Value", "60"));
    server.Simctl({"set", "14", "1", "50"});
    server.Simctl({"plug", "3"});
    server.Simctl({"recover", "13"});
    WaitForSix(server);
}

TEST(DeviceLife, TablesInQuickSuccessionLoseNoDevice) {
    PlayedServer server(SixCards());
    WaitForSix(server);
    for (int round = 0; round < 3; ++round) {
        server.Simctl({"pull", "2"});
        server.Simctl({"move", "13", "33"});
        server.Simctl({"plug", "2"});
        server.Simctl({"move", "33", "13"});
    }
    for (int slot = 1; slot <= 6; ++slot) {
        for (const char* medium : {"1", "2"}) {
            server.Simctl({"set", medium + std::to_string(slot), "1", "51"});
        }
    }
    for (int slot = 1; slot <= 6; ++slot) {
        EXPECT_TRUE(server.WaitForProperty(SensorOf(slot), valueInterface, "Value", "51"));
    }
}

TEST(DeviceLife, AChangedRepositoryIsNoticedAndReadAgain) {
    PlayedServer server(Card("      - {eid: 11, medium: vdm}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"touch", "11"});
    EXPECT_TRUE(server.WaitForLog("PDR Changed!!!", 2));
    server.Simctl({"set", "11", "1", "51"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "51"));
}

TEST(HostPower, OffRemovesEverythingAndOnBringsItBackWithItsFirstNumbers) {
    PlayedServer server(SixCards());
    EXPECT_EQ(WaitForSix(server), firstSix);
    server.Simctl({"host", "off"});
    ASSERT_TRUE(WaitForNothing(server));
    ASSERT_TRUE(server.Daemon().Runs());
    server.Simctl({"host", "on"});
    server.Simctl({"table"});
    EXPECT_EQ(WaitForSix(server), firstSix);
}

TEST(HostPower, NumbersBeginAnewOnlyWhereNoDeviceIsLeft) {
    PlayedServer server(SixCards());
    const auto first = WaitForAllBut(server, 0);
    const int number151 = first.at("151");
    const std::string slot = std::to_string(number151);
    server.Simctl({"pull", slot});
    const std::set<std::string> kept{"152", "153", "154", "155", "156"};
    EXPECT_EQ(Numbers(WaitForAllBut(server, number151)), kept);
    server.Simctl({"plug", slot});
    EXPECT_EQ(WaitForAllBut(server, 0), first);

    server.Simctl({"host", "off"});
    ASSERT_TRUE(WaitForNothing(server));
    server.Simctl({"pull", slot, "quietly"});
    server.Simctl({"host", "on"});
    server.Simctl({"table"});
    const std::set<std::string> anew{"151", "152", "153", "154", "155"};
    EXPECT_EQ(Numbers(WaitForAllBut(server, number151)), anew);
}

TEST(HostPower, OffInTheMiddleOfATimeOutEndsTheDevice) {
    PlayedServer server("platform-services: true\n" + Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Simctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 11 and EID = 11"));
    server.Simctl({"host", "off"});
    EXPECT_TRUE(server.WaitForLog(powerOffLine));
    EXPECT_TRUE(WaitForNothing(server));
    EXPECT_TRUE(server.Daemon().Runs());
    server.Simctl({"unsilence", "11"});
    server.Simctl({"host", "on"});
    server.Simctl({"table"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
}

TEST(HostPower, OffInTheMiddleOfAnInventoryEndsTheDevice) {
    PlayedServer server(SixCards());
    WaitForSix(server);
    server.Simctl({"slow", "13", "60"});
    server.Simctl({"pull", "3"});
    server.Simctl({"plug", "3"});
    server.Simctl({"wait-requests", "13", "3"});
    server.Simctl({"host", "off"});
    ASSERT_TRUE(server.WaitForLog(powerOffLine));
    ASSERT_TRUE(WaitForNothing(server));
    server.Simctl({"recover", "13"});
    server.Simctl({"host", "on"});
    server.Simctl({"table"});
    EXPECT_EQ(WaitForSix(server), firstSix);
}

TEST(HostPower, OffWhileDevicesAreRemovedIsNotLostAndATableWaitsForBoth) {
    PlayedServer server(SixCards());
    WaitForSix(server);
    // The removal of six devices takes 12 s of the daemon's, time enough for all of this. The
    // second power off counts though the host is on again when its turn comes.
    server.Simctl({"host", "off"});
    ASSERT_TRUE(server.WaitForLog(powerOffLine));
    for (const char* power : {"on", "off", "on"}) {
        server.Simctl({"host", power});
    }
    server.Simctl({"table"});
    EXPECT_TRUE(server.WaitForLog(powerOffLine, 2));
    EXPECT_EQ(WaitForSix(server), firstSix) << "the table came during the removal";
    EXPECT_EQ(CountOf(server.Log(), powerOffLine), 2);
}

TEST(FruEvent, TypesTheSensorsOfACardAnewOnTheMainThread) {
    PlayedServer server("platform-services: true\n" + Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    const std::string types = "com.korv.bmc.Thermal.ThermalSensor.dev_types.";
    const auto type = [&] {
        return server.Objects()[oneController][thermalInterface]["SensorType"];
    };
    EXPECT_EQ(type(), "\"" + types + "NIC_ASIC\"");
    for (const char* fru : {"4", "3"}) { // another slot's, and one of a card that isn't OCP
        server.Simctl({"fru", fru, "plain"});
    }
    server.Simctl({"fru", "3", "OCP-100G"});
    EXPECT_TRUE(server.WaitForProperty(oneController, thermalInterface, "SensorType",
                                       "\"" + types + "NDC_ASIC\""));
    EXPECT_TRUE(server.WaitForProperty(oneController, thermalInterface, "DeviceType", "\"OCP3\""));
    EXPECT_TRUE(server.WaitForLog("vantricd_fast:sensor_type_update.cpp:RetypeSensors:"));
}

} // namespace
} // namespace vantric::test
