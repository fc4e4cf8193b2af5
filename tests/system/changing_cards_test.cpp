// SPDX-License-Identifier: Apache-2.0
/** What cards change while they are monitored, from their answers to the bus: readings, states and
 *  records; the platform's table and firmware updates. How it looks at first is in the .bus files.
 */
#include "support/eventually.hpp"
#include "system/played_server.hpp"

#include <gtest/gtest.h>

namespace vantric::test {
namespace {

const std::string sensor5 = "temperature/NIC_Slot_3_sensorid_5";
const std::string compact = "temperature/FC_Slot_8_sensorid_1";
const std::string hot = "temperature/FC_Slot_8_sensorid_12";
const std::string link = "fibre_channel_2/sensor/state/sensorid_21";

TEST(Cards, ShowReadingsStatesHealthAndModels) {
    PlayedServer server(ReadScenario("cards.yaml"));
    server.See(sensor5 + " Value=41").Do("set 31 5 55").See(sensor5 + " Value=55");
    server.Do("set 31 6 23").See("power/NIC_Slot_3_sensorid_6 ProbeReading=23");
    server.Do("operational 31 5 failed").See(sensor5 + " Value=2147483647");
    server.Do("operational 31 5 enabled").See(sensor5 + " Value=55");

    server.See("Nic/Slot/5 DeviceStatus=4").Do("set-state 52 20 1 4");
    server.See("sensorid_ctrl2_20 StateSensorDetails={\"StateSensor.20.1\": (\"Health State\", "
               "\"Fatal\")}");
    server.See("Nic/Slot/5 DeviceStatus=5").See("Nic/Slot/3 DeviceStatus=2");
}

TEST(Cards, AreModelledAgainWithTheirNumbersWhenTheirRecordsChange) {
    PlayedServer server(ReadScenario("cards.yaml"));
    server.See(hot + " Value=75").See(link + " SensorID=21").See(compact + " Value=61");
    const auto number = [&server](const std::string& sensor) {
        const std::string path = "/xyz/openbmc_project/sensors/" + sensor;
        return server.Objects()[path]["com.korv.bmc.Thermal.ThermalSensor"]["Instance"];
    };
    const auto numbered = [first = " Instance=" + number(compact),
                           second = " Instance=" + number(hot), &server] {
        server.See(compact + first).See(compact + " Value=61");
        server.See(hot + second).See(hot + " Value=75");
    };
    server.Do("drop 81 21").Miss(link); // only a look at the records misses a state sensor
    numbered();
    server.Do("drop 81 12").Miss(hot).See(compact + " Value=61");
    server.Do("restore 81 12").Do("restore 81 21").See(link + " SensorID=21");
    numbered();
    server.Do("threshold 81 12 critical-high 85").See(hot + " CriticalHigh=85");
    numbered();
}

constexpr auto tableRead = "Number of accelerator entry in SCT is 1";
const std::string listed = "temperature/ProcAccelerator_Slot_5_1_sensorid_405";
const std::string power = "power/ProcAccelerator_Slot_5_1_sensorid_60";

TEST(Accelerators, ShareTheTableWhichOutlivesAPowerOff) {
    PlayedServer server(ReadScenario("accelerators.yaml"));
    server.See(listed + " CriticalHigh=92").Do("plug 6");
    server.See("temperature/ProcAccelerator_Slot_6_1_sensorid_405 Location=6");
    server.See("power/ProcAccelerator_Slot_6_1_sensorid_63 SensorNumber=63");
    server.Do("host off").Miss(power).Miss(listed);
    // The second line tells that the first signal has done its work. A table that is faster than
    // that finds the host off.
    server.Do("host on").Read("HOST_POWER_ON", 2).Do("table").See(listed + " CriticalHigh=92");
    EXPECT_EQ(CountOf(server.Log(), tableRead), 1);
}

TEST(FirmwareUpdate, KeepsCommandsFromTheCardsThatItIsFor) {
    PlayedServer server(ReadScenario("cxl.yaml"));
    const std::string memory = "temperature/CXLMemory_Slot_2_sensorid_1";
    const auto answered = [&server] {
        auto counts = server.Answered();
        return std::vector{counts[21], counts[41], counts[42]};
    };
    server.See(memory + " Value=63").Do("fw-start");
    std::vector<int> before;
    ASSERT_TRUE(Eventually([&] { // until the cycles that had begun are over
        before = answered();
        server.Do("wait-requests 31 5");
        return answered() == before;
    }));
    server.Do("set 21 1 80").Do("wait-requests 31 20");
    EXPECT_EQ(answered(), before);
    server.See(memory + " Value=63").Do("fw-stop").See(memory + " Value=80");
}

} // namespace
} // namespace vantric::test
