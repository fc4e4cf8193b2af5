/** CXL memory: what it shows, and that a firmware update leaves it alone. */
#include "system/cards_expected.hpp"

#include <chrono>
#include <filesystem>
#include <fstream>

namespace vantric::test {
namespace {

constexpr auto bothEndpoints = {41, 42};

/** The time that a thread of the daemon has had a processor. */
std::chrono::nanoseconds ProcessorTime(pid_t daemon, const std::string& thread) {
    for (const auto& task :
         std::filesystem::directory_iterator("/proc/" + std::to_string(daemon) + "/task")) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm"), name);
        if (name == thread) {
            std::int64_t time = -1;
            std::ifstream(task.path() / "schedstat") >> time;
            return std::chrono::nanoseconds(time);
        }
    }
    ADD_FAILURE() << "no thread " << thread;
    return {};
}

class Cxl : public SharedServer<Cxl> {
public:
    static constexpr auto scenario = "cxl.yaml";
};

TEST_F(Cxl, ShowsTheSensorsThatHaveANameAndNoOthers) {
    const std::vector<std::string> expected{
        "Nic/Slot/3",
        "Nic/Slot/3/networkcontroller_1",
        "cxl/memory/Slot/2",
        "cxl/memory/Slot/4",
        "power/CXLMemory_Slot_2_sensorid_10",
        "temperature/CXLMemory_Slot_2_sensorid_1",
        "temperature/CXLMemory_Slot_2_sensorid_3",
        "temperature/CXLMemory_Slot_2_sensorid_69",
        "temperature/CXLMemory_Slot_2_sensorid_70",
        "temperature/CXLMemory_Slot_4_sensorid_1",
        "temperature/NIC_Slot_3_sensorid_1",
    };
    std::vector<std::string> paths;
    Eventually([&] {
        paths = ShortPaths(server->Objects());
        return paths == expected;
    });
    EXPECT_EQ(paths, expected);
    EXPECT_TRUE(server->WaitForLog("Invalid/Not supported EntityType: 67"));
    const std::string type = "com.korv.bmc.Thermal.ThermalSensor.dev_types.CXL_CMB_";
    const std::string card = "/xyz/openbmc_project/inventory/system/cxl/memory/Slot/2";
    ExpectShown({
        {"cxl/memory/Slot/2",
         {{"Inventory.LDID", "CXLMemory.Slot.2"},
          {"Inventory.FriendlyLDID", "CXL Memory in Slot 2"},
          {"Inventory.DeviceType", "9"},
          {"Inventory.DeviceStatus", "2"},
          {"FRU.Model", "CM-256"}}},
        {"temperature/CXLMemory_Slot_2_sensorid_1",
         {{"Value.Value", "63"},
          {"Warning.WarningHigh", "95"},
          {"Warning.WarningAlarmHigh", "false"},
          {"ThermalSensor.SensorType", type + "CTRL"},
          {"ThermalSensor.Location", "2"},
          {"Definitions.Associations",
           R"([("inventory", "memory_controller", ")" + card + R"(")])"},
          {"ProbeObj.Key", "no interface"}}},
        {"temperature/CXLMemory_Slot_2_sensorid_3",
         {{"Value.Value", "65"}, {"ThermalSensor.SensorType", type + "SPD"}}},
        {"temperature/CXLMemory_Slot_2_sensorid_69",
         {{"Value.Value", "52"},
          {"ThermalSensor.SensorType", type + "COMP"},
          // Objects begin at 0, and nothing takes a low alarm back.
          {"Critical.CriticalLow", "5"},
          {"Critical.CriticalAlarmLow", "true"}}},
        {"temperature/CXLMemory_Slot_2_sensorid_70",
         {{"Value.Value", "53"}, {"ThermalSensor.SensorType", type + "DRAM"}}},
        {"power/CXLMemory_Slot_2_sensorid_10",
         {{"ProbeObj.ProbeReading", "18"},
          {"ProbeObj.ProbeLocation", "Card power"},
          {"ProbeObj.TargetDevKey", "CXLMemory.Slot.2-3"},
          {"ProbeObj.FriendlyLDID", "CXL Memory in Slot 2 Port 3"},
          {"ProbeObj.Key", "CXLMemory.Slot.2-3#sensorid_10"}}},
    });
}

TEST_F(Cxl, PollsBothEndpointsOfACardWithoutAskingForStates) {
    for (const int eid : bothEndpoints) {
        const std::string reading = eid == 41 ? "0211010000" : "0211050000";
        EXPECT_TRUE(Eventually([&] { return server->Answered(eid, reading) > 8; })) << eid;
    }
    // Readings of two endpoints look for another path.
    EXPECT_EQ(Show("temperature/CXLMemory_Slot_4_sensorid_1", "Value.Value"), "0");
    EXPECT_TRUE(Eventually([] { return server->Answered(21, "0211") > 0; }));
    EXPECT_EQ(server->Answered(21, "0221"), 0);
}

TEST_F(Cxl, AFirmwareUpdateKeepsCommandsAwayAndItsThreadSleeps) {
    ExpectShown({{"temperature/CXLMemory_Slot_2_sensorid_1", {{"Value.Value", "63"}}}});
    const auto answered = [] {
        return std::vector{server->Answered(21), server->Answered(41), server->Answered(42)};
    };
    Simctl({"fw-start"});
    Simctl({"wait-requests", "31", "10"}); // cycles that had begun are over
    Simctl({"set", "21", "1", "80"});
    const auto before = answered();
    const auto begun = std::chrono::steady_clock::now();
    const auto used = ProcessorTime(server->Daemon().Id(), "PLDM_Slot_2");
    Simctl({"wait-requests", "31", "20"});
    const auto spent = ProcessorTime(server->Daemon().Id(), "PLDM_Slot_2") - used;
    EXPECT_EQ(answered(), before);
    EXPECT_LT(spent * 10, std::chrono::steady_clock::now() - begun);
    EXPECT_EQ(Show("temperature/CXLMemory_Slot_2_sensorid_1", "Value.Value"), "63");
    Simctl({"fw-stop"});
    ExpectShown({{"temperature/CXLMemory_Slot_2_sensorid_1", {{"Value.Value", "80"}}}});
    Simctl({"release", "21", "1"});
}

} // namespace
} // namespace vantric::test
