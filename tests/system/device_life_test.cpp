/** Cards fall silent, change their endpoints, go and come back; the host goes off and on. */
#include "system/played_server.hpp"

#include <gtest/gtest.h>

namespace vantric::test {
namespace {

constexpr auto valueInterface = "xyz.openbmc_project.Sensor.Value";
constexpr auto thermalInterface = "com.korv.bmc.Thermal.ThermalSensor";
constexpr auto oneController = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_1";
constexpr auto firstOfTwo = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_ctrl1_1";
constexpr auto secondOfTwo = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_ctrl2_1";

/** A card in slot 3 with the given endpoints and one sensor. */
std::string Card(const std::string& endpoints) {
    return "cards:\n  - slot: 3\n    kind: nic\n    endpoints:\n" + endpoints +
           "    sensors:\n      - {id: 1, unit: celsius, value: 50}\n";
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
    server.Benchctl({"set", "12", "1", "55"});
    server.Benchctl({"silence", "11"});
    // Over I2C from here on: the value is that of the other endpoint.
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "55"));
    EXPECT_TRUE(server.WaitForLog("Use I2C EIDs for slot 3"));
    EXPECT_TRUE(server.WaitForLog("Updating EID = 12 for slot 3"));
}

TEST(DeviceLife, ANewTableBringsItBackToVdm) {
    PlayedServer server(Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"set", "12", "1", "55"});
    server.Benchctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "55"));
    server.Benchctl({"unsilence", "11"});
    server.Benchctl({"table"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
}

TEST(DeviceLife, TwoControllersAreOrderedByTheirAddressAndMakeANewInventoryOnI2c) {
    PlayedServer server(Card(twoVdmTwoI2c));
    ASSERT_TRUE(server.WaitForProperty(firstOfTwo, valueInterface, "Value", "50"));
    server.Benchctl({"set", "21", "1", "60"});
    EXPECT_TRUE(server.WaitForProperty(secondOfTwo, valueInterface, "Value", "60"));
    server.Benchctl({"set", "22", "1", "77"});
    server.Benchctl({"silence", "11"});
    EXPECT_TRUE(server.WaitForLog("Inventory successful for slot 3", 2));
    EXPECT_TRUE(server.WaitForProperty(secondOfTwo, valueInterface, "Value", "77"));
}

TEST(DeviceLife, WithoutI2cItWaitsAndTriesAgain) {
    PlayedServer server(Card("      - {eid: 11, medium: vdm}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("mI2C_EIDs vector is empty for slot 3"));
    ASSERT_TRUE(server.WaitForLog("Device in Slot 3 waiting 115 seconds"));
    server.Benchctl({"unsilence", "11"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
}

TEST(DeviceLife, ATableEndsTheWait) {
    PlayedServer server(Card("      - {eid: 11, medium: vdm}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("Device in Slot 3 waiting 115 seconds"));
    server.Benchctl({"move", "11", "31"});
    server.Benchctl({"unsilence", "31"});
    server.Benchctl({"table"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    EXPECT_TRUE(server.WaitForLog("Updating EID = 31 for slot 3"));
}

TEST(DeviceLife, ATableThatComesInATimeOutIsTakenAtOnce) {
    PlayedServer server(Card("      - {eid: 12, medium: i2c, bus-address: 0x1d}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"silence", "12"});
    // Over I2C a failed cycle is tolerated and begins anew at once: the table must get its turn.
    ASSERT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 11 and EID = 12", 2));
    server.Benchctl({"move", "12", "32"});
    server.Benchctl({"unsilence", "32"});
    server.Benchctl({"table"});
    EXPECT_TRUE(server.WaitForLog("Updating EID = 32 for slot 3"));
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
}

TEST(DeviceLife, AChangedRepositoryIsNoticedAndReadAgain) {
    PlayedServer server(Card("      - {eid: 11, medium: vdm}\n"));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"touch", "11"});
    EXPECT_TRUE(server.WaitForLog("PDR Changed!!!", 2));
    server.Benchctl({"set", "11", "1", "51"});
    EXPECT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "51"));
}

TEST(HostPower, OffRemovesEverythingAndOnBringsItBackWithItsFirstNumbers) {
    PlayedServer server("platform-services: true\n" + Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"host", "off"});
    ASSERT_TRUE(
        server.WaitForObjects([](const PublishedObjects& objects) { return objects.empty(); }));
    ASSERT_TRUE(server.Daemon().Runs());
    server.Benchctl({"host", "on"});
    server.Benchctl({"table"});
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    EXPECT_EQ(server.Objects().at(oneController).at(thermalInterface).at("Instance"), "151");
}

TEST(HostPower, OffInTheMiddleOfATimeOutEndsTheDevice) {
    PlayedServer server("platform-services: true\n" + Card(vdmAndI2c));
    ASSERT_TRUE(server.WaitForProperty(oneController, valueInterface, "Value", "50"));
    server.Benchctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 11 and EID = 11"));
    server.Benchctl({"host", "off"});
    EXPECT_TRUE(
        server.WaitForObjects([](const PublishedObjects& objects) { return objects.empty(); }));
    EXPECT_TRUE(server.WaitForLog("EVENT_POWER_OFF Received deleting the devices"));
}

} // namespace
} // namespace vantric::test
