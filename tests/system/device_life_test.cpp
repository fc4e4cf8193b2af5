// SPDX-License-Identifier: Apache-2.0
/** Cards fall silent, move, go and come back; the host goes off and on; the bus ends. */
#include "system/played_server.hpp"

#include <gtest/gtest.h>

#include <csignal>

namespace vantric::test {
namespace {

constexpr auto twoCards = R"(
platform-services: true
cards:
  - slot: 3
    kind: nic
    endpoints: [{eid: 11, medium: vdm}, {eid: 12, medium: i2c}]
    sensors: [{id: 1, unit: celsius, value: 50}]
  - slot: 4
    kind: nic
    endpoints: [{eid: 13, medium: vdm}]
    sensors: [{id: 1, unit: celsius, value: 40}]
)";
const std::string slot3 = "temperature/NIC_Slot_3_sensorid_1";
const std::string slot4 = "temperature/NIC_Slot_4_sensorid_1";

constexpr auto i2cAlone = R"(
cards:
  - slot: 3
    kind: nic
    endpoints: [{eid: 12, medium: i2c}]
    sensors: [{id: 1, unit: celsius, value: 50}]
)";

constexpr auto twoControllers = R"(
platform-services: true
cards:
  - slot: 3
    kind: nic
    endpoints:
      - {eid: 21, medium: vdm, bdf: 0x3b01}
      - {eid: 11, medium: vdm, bdf: 0x3b00}
      - {eid: 12, medium: i2c, bus-address: 0x1d, udid: second}
      - {eid: 22, medium: i2c, bus-address: 0x1e, udid: first}
    sensors:
      - {id: 1, unit: celsius, value: 50, entity: {type: network-controller}}
)";
const std::string controller1 = "temperature/NIC_Slot_3_sensorid_ctrl1_1";
const std::string controller2 = "temperature/NIC_Slot_3_sensorid_ctrl2_1";

TEST(SilentEndpoint, IsLeftForI2cUntilATableBringsItBack) {
    PlayedServer server(twoCards);
    server.See(slot3 + " Value=50").Do("set 12 1 55").Do("silence 11");
    server.See(slot3 + " Value=55").Do("unsilence 11").Do("table").See(slot3 + " Value=50");
}

TEST(Table, IsTakenDuringTimeOuts) {
    PlayedServer server(i2cAlone);
    server.See(slot3 + " Value=50").Do("silence 12");
    // A failed cycle over I2C is tolerated and begins anew at once.
    server.Read("MCTP Timeout::For CMD = 11 and EID = 12", 2).Do("move 12 32").Do("unsilence 32");
    server.Read("Updating EID = 32 for slot 3").Read("PLDM_Slot_3:").See(slot3 + " Value=50");
}

TEST(Table, DuringAnInventoryLeadsToANewOneOnItsEndpoints) {
    PlayedServer server(twoControllers);
    server.See(controller1 + " Value=50").Do("silence 12").Do("silence 11");
    server.Read("Use I2C EIDs for slot 3").Do("recover 11");
    server.Read("MCTP Timeout::For CMD = 4 and EID = 12").Do("move 21 31");
    server.Read("Updating EID = 31 for slot 3").Do("set 31 1 60").See(controller2 + " Value=60");
    EXPECT_EQ(CountOf(server.Log(), "PLDM Inventory failed"), 0);
}

TEST(Controllers, OverI2cAreOrderedByTheirUdids) {
    PlayedServer server(twoControllers);
    server.See(controller2 + " Value=50").Do("set 22 1 77").Do("silence 11");
    server.See(controller1 + " Value=77").See(controller2 + " Value=50");
}

TEST(HostPower, OffEndsADeviceInATimeOutAndOnNumbersSensorsAnew) {
    PlayedServer server(std::string(twoCards) + "    plugged: false\n");
    server.See(slot3 + " Instance=151").Do("plug 4").See(slot4 + " Instance=152");
    server.Do("silence 11");
    server.Read("MCTP Timeout::For CMD = 11 and EID = 11").Do("host off").Miss(slot3).Miss(slot4);
    server.Do("pull 3 quietly");
    // The second line tells that the first signal has done its work. A table that is faster than
    // that finds the host off.
    server.Do("host on").Read("HOST_POWER_ON", 2).Do("table").See(slot4 + " Instance=151");
}

TEST(UnchangedSensors, AreSilentOnTheBus) {
    PlayedServer server(ReadScenario("quiet.yaml"));
    server.See("power/NIC_Slot_2_sensorid_110 ProbeReading=12").Do("wait-requests 21 100");
    server.Client().Settle(PlayedServer::serviceName);
    server.Client().TakeSignals();
    // Twelve cycles and more, with at least one look at the repository.
    server.Do("wait-requests 21 500");
    server.Client().Settle(PlayedServer::serviceName);
    EXPECT_TRUE(server.Client().TakeSignals().empty());
}

TEST(LostBus, EndsTheProcessWithAFailure) {
    PlayedServer server(twoCards);
    server.See(slot3 + " Value=50");
    kill(server.Bus().Process(), SIGKILL);
    const auto status = server.Daemon().WaitForEnd();
    ASSERT_TRUE(status.has_value());
    EXPECT_NE(*status, 0);
    EXPECT_LT(*status, 128) << "ended by a signal";
}

} // namespace
} // namespace vantric::test
