/** From the endpoint table to a value on the bus: a network card without entity associations. */
#include "system/played_server.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace vantric::test {
namespace {

constexpr auto valueInterface = "xyz.openbmc_project.Sensor.Value";
constexpr auto probeInterface = "com.korv.zenth.Sensor.ProbeObj";
constexpr auto temperature1 = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_1";
constexpr auto power10 = "/xyz/openbmc_project/sensors/power/NIC_Slot_3_sensorid_10";
constexpr auto inventory = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3";
constexpr auto controller =
    "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3/networkcontroller_1";

/** One network card in slot 3 at EID 11 with the given sensors. */
std::string Card(const std::string& sensors) {
    return R"(
cards:
  - slot: 3
    kind: nic
    pci: {vendor: 0x15b3, device: 0x1021, subvendor: 0x15b3, subdevice: 0x0040}
    cpu-affinity: 1
    firmware: "28.39.1002"
    endpoints:
      - {eid: 11, medium: vdm, bdf: 0x3b00}
    sensors:
)" + sensors;
}

const std::string twoSensors = R"(
      - {id: 1, unit: celsius, value: 61, thresholds: {warning-high: 90, critical-high: 100}}
      - {id: 10, unit: watts, value: 20}
)";

TEST(FirstRoad, ACardBecomesItsObjects) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    ASSERT_TRUE(server.WaitForProperty(power10, probeInterface, "ProbeReading", "20"));
    const auto objects = server.Objects();
    EXPECT_EQ(Paths(objects),
              (std::vector<std::string>{inventory, controller, power10, temperature1}));
    const auto& sensor = objects.at(temperature1);
    EXPECT_EQ(sensor.at(probeInterface).at("Key"), "\"NIC.Slot.3#sensorid_1\"");
    EXPECT_EQ(sensor.at(probeInterface).at("ProbeStatus"), "2");
    EXPECT_EQ(sensor.at("com.korv.bmc.Thermal.ThermalSensor").at("Instance"), "151");
    EXPECT_EQ(sensor.at("xyz.openbmc_project.Sensor.Threshold.Warning").at("WarningHigh"), "90");
    EXPECT_EQ(sensor.at("xyz.openbmc_project.Association.Definitions").at("Associations"),
              "[(\"inventory\", \"networkcontroller\", \"" + std::string(controller) + "\")]");
    EXPECT_EQ(objects.at(inventory).at("com.korv.zenth.PLDM.Inventory").at("FriendlyLDID"),
              "\"NIC in Slot 3\"");
}

TEST(FirstRoad, AChangedValueMoves) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    server.Simctl({"set", "11", "1", "95"});
    EXPECT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "95"));
    EXPECT_EQ(server.Objects().at(temperature1).at(probeInterface).at("ProbeReading"), "95");
}

TEST(FirstRoad, UnchangedSensorsAreSilentOnTheBus) {
    std::string sensors;
    for (int id = 1; id <= 40; ++id) {
        sensors += "      - {id: " + std::to_string(id) + ", unit: celsius, value: 40}\n";
    }
    PlayedServer server(Card(sensors));
    ASSERT_TRUE(server.WaitForProperty("/xyz/openbmc_project/sensors/temperature/"
                                       "NIC_Slot_3_sensorid_40",
                                       valueInterface, "Value", "40"));
    server.Simctl({"wait-requests", "11", "100"});
    server.Client().Settle(PlayedServer::serviceName);
    server.Client().TakeSignals();
    // Twelve cycles and more, with at least one look at the repository.
    server.Simctl({"wait-requests", "11", "500"});
    server.Client().Settle(PlayedServer::serviceName);
    EXPECT_TRUE(server.Client().TakeSignals().empty());
}

TEST(FirstRoad, ASilentEndpointShowsThatItsReadingsAreGone) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    server.Simctl({"silence", "11"});
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "2147483647"));
    EXPECT_EQ(server.Objects().at(temperature1).at(probeInterface).at("ProbeStatus"), "0");
    // Ten attempts, each with its line, before the card counts as silent.
    EXPECT_TRUE(server.WaitForLog("MCTP Timeout::For CMD = 11 and EID = 11", 10));
    server.Simctl({"unsilence", "11"});
    EXPECT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
}

TEST(FirstRoad, ATableAgainChangesNothing) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    server.Simctl({"table"});
    ASSERT_TRUE(server.WaitForLog("END_POINT_TABLE_UPDATED", 2));
    server.Simctl({"wait-requests", "11", "10"});
    server.Client().Settle(PlayedServer::serviceName);
    for (const Signal& signal : server.Client().Signals()) {
        EXPECT_NE(signal.member, "InterfacesRemoved");
    }
}

TEST(FirstRoad, PulledAndPluggedAgain) {
    PlayedServer server(Card(twoSensors) + R"(
  - slot: 4
    kind: nic
    endpoints:
      - {eid: 12, medium: vdm, bdf: 0x3c00}
    sensors:
      - {id: 1, unit: celsius, value: 50}
)");
    constexpr auto other = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_4_sensorid_1";
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    ASSERT_TRUE(server.WaitForProperty(other, valueInterface, "Value", "50"));
    server.Simctl({"pull", "3"});
    ASSERT_TRUE(server.WaitForObjects([](const PublishedObjects& objects) {
        return !objects.contains(temperature1) && !objects.contains(inventory);
    }));
    EXPECT_TRUE(server.Objects().contains(other));
    server.Simctl({"plug", "3"});
    EXPECT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
}

TEST(ProcessLife, SigtermEndsItAtOnce) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    server.Daemon().Signal(SIGTERM);
    EXPECT_EQ(server.Daemon().WaitForEnd(), 128 + SIGTERM);
    EXPECT_TRUE(server.Objects().empty());
}

TEST(ProcessLife, ALostBusEndsItWithAFailure) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    kill(server.Bus().Process(), SIGKILL);
    const auto status = server.Daemon().WaitForEnd();
    ASSERT_TRUE(status.has_value());
    EXPECT_NE(*status, 0);
    EXPECT_LT(*status, 128) << "ended by a signal";
}

TEST(ProcessLife, WithoutASimulatorItServesItsNameAndNothingElse) {
    PlayedServer server(Card(twoSensors));
    ASSERT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "61"));
    server.Simulator().Signal(SIGKILL);
    EXPECT_TRUE(server.WaitForProperty(temperature1, valueInterface, "Value", "2147483647"));
    EXPECT_TRUE(server.Daemon().Runs());
}

} // namespace
} // namespace vantric::test
