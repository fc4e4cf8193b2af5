/** Accelerators: which of their sensors stand on the bus and how often they are read; the
 * platform's table; and the board that stands for eight. */
#include "system/cards_expected.hpp"

#include <cstdlib>

namespace vantric::test {
namespace {

constexpr auto tableRead = "Number of accelerator entry in SCT is 1";
constexpr auto listed = "temperature/ProcAccelerator_Slot_5_1_sensorid_405";
constexpr auto power = "power/ProcAccelerator_Slot_5_1_sensorid_60";
const std::string slots = "accelerator/ProcAccelerator/Slot/";
const std::string type = "com.korv.bmc.Thermal.ThermalSensor.dev_types.";

/** Slots of the board's accelerators, from GPU0 to GPU7. */
constexpr int slotOfGpu[] = {24, 28, 27, 23, 22, 26, 25, 21};

std::string Friendly(int slot) {
    return "Proc Accelerator Controller in Slot " + std::to_string(slot) + " of Instance 1";
}

/** An association with an inventory object, as text. */
std::string Inventory(const std::string& name, const std::string& path) {
    return "[(\"inventory\", \"" + name + "\", \"" + path + "\")]";
}

/** Waits for an object of the table's kind of path. */
bool WaitFor(PlayedServer& server, const std::string& path) {
    return server.WaitForObjects(
        [&](const PublishedObjects& objects) { return objects.contains(WholePath(path)); });
}

class Accelerators : public SharedServer<Accelerators> {
public:
    static constexpr auto scenario = "accelerators.yaml";

protected:
    static std::vector<std::string> PathsWith(const std::string& piece) {
        auto paths = ShortPaths(server->Objects());
        std::erase_if(
            paths, [&](const std::string& path) { return path.find(piece) == std::string::npos; });
        return paths;
    }

    /** Waits until the objects whose paths have a piece in them are these. */
    static void ExpectPaths(const std::string& piece, const std::vector<std::string>& expected) {
        std::vector<std::string> paths;
        Eventually([&] { return (paths = PathsWith(piece)) == expected; });
        EXPECT_EQ(paths, expected);
    }

    static int Read(int eid, const std::string& sensor) {
        return server->Answered(eid, "0211" + sensor);
    }
};

TEST_F(Accelerators, ShowPowerAndTheTemperaturesOfTheTable) {
    ExpectPaths("Slot_5_1_", {power, "temperature/ProcAccelerator_Slot_5_1_sensorid_30", listed,
                              "temperature/ProcAccelerator_Slot_5_1_sensorid_45"});
    ExpectPaths("Slot/5", {slots + "5", slots + "5/sensor/state/sensorid_20"});
    const std::string card = WholePath(slots + "5");
    ExpectShown({
        {slots + "5",
         {{"Accelerator.Type",
           "xyz.openbmc_project.Inventory.Item.Accelerator.AcceleratorType.GPU"},
          {"Definitions.Associations",
           Inventory("ProcAccelerator", "/xyz/openbmc_project/inventory/system/board/pcieslots5")},
          {"Inventory.LDID", "ProcAccelerator.Slot.5-1"},
          {"Inventory.FriendlyLDID", Friendly(5)},
          {"Inventory.DeviceType", "2"},
          {"Inventory.FirmwareVersion", "96.00.61"},
          {"Inventory.CPUAffinity", "2"}}},
        {listed,
         {{"Warning.WarningHigh", "85"},
          {"Availability.Available", "true"},
          {"Definitions.Associations", Inventory("GPU_1", card + "/GPU_1")},
          {"ThermalSensor.SensorType", type + "GPU_COMP"},
          {"ProbeObj.EntityID", "11"},
          {"ProbeObj.Key", "ProcAccelerator.Slot.5-1-1#GPU"}}},
        {"temperature/ProcAccelerator_Slot_5_1_sensorid_45",
         {{"Value.Value", "66"},
          {"ThermalSensor.SensorType", type + "UNKNOWN"},
          {"ProbeObj.Key", "no interface"}}},
        {power,
         {{"ProbeObj.ProbeReading", "420"},
          {"ProbeObj.Key", "ProcAccelerator.Slot.5-1#CARD_POWER"},
          {"ProbeObj.FriendlyLDID", Friendly(5)},
          {"ProbeObj.ProbeLocation", "CARD_POWER"}}},
        {slots + "5/sensor/state/sensorid_20",
         {{"StateSensor.LDID", "ProcAccelerator.Slot.5-1"},
          {"StateSensor.StateSensorDetails",
           R"({"StateSensor.20.1": ("Health State", "Normal")})"}}},
        // With FRU data, and two endpoints.
        {slots + "7",
         {{"FRU.Model", "GX-80"},
          {"FRU.IANA", "5703"},
          {"Accelerator.Type", "no interface"},
          {"Inventory.DeviceType", "2"}}},
        {"power/ProcAccelerator_Slot_7_1_sensorid_ctrl1_64", {{"ProbeObj.ProbeReading", "200"}}},
        {slots + "7/networkcontroller_1/sensor/state/sensorid_ctrl1_22",
         {{"StateSensor.StateSensorDetails",
           R"({"StateSensor.22.1": ("Presence", "Not Present")})"}}},
    });
}

TEST_F(Accelerators, WithoutAnEntryShowOnlyWhatTheTableHasForOthers) {
    Simctl({"plug", "6"});
    ExpectPaths("Slot_6_1_", {"power/ProcAccelerator_Slot_6_1_sensorid_63",
                              "temperature/ProcAccelerator_Slot_6_1_sensorid_405"});
    EXPECT_EQ(CountOf(server->Log(), tableRead), 1);
}

TEST_F(Accelerators, ReadEachGroupAtItsRate) {
    // 405 in every cycle, 30 in every second, 60 in every fourth.
    int fast = 0;
    ASSERT_TRUE(Eventually([&] { return (fast = Read(81, "9501")) >= 24; }));
    const int medium = Read(81, "1e00");
    const int slow = Read(81, "3c00");
    EXPECT_LE(std::abs(2 * medium - fast), 4) << medium << " of " << fast;
    EXPECT_LE(std::abs(4 * slow - fast), 6) << slow << " of " << fast;
    // No groups on the board.
    EXPECT_LE(std::abs(Read(82, "0100") - Read(82, "0200")), 1);
}

TEST_F(Accelerators, ABoardIsNineObjectsAndEightTemperaturesThatMoveTogether) {
    std::vector<Expected> table{
        {"UBB",
         {{"Inventory.LDID", "UBB.Integrated.1-1"},
          {"Inventory.FriendlyLDID", "Integrated Universal baseboard of Instance 1"},
          {"Definitions.Associations",
           Inventory("", "/xyz/openbmc_project/inventory/system/board/pcieslots20")}}},
    };
    for (const int slot : slotOfGpu) {
        const std::string number = std::to_string(slot);
        const std::string ldid = "ProcAccelerator.Slot." + number + "-1";
        table.push_back({slots + number,
                         {{"Inventory.LDID", ldid},
                          {"Inventory.FriendlyLDID", Friendly(slot)},
                          {"Inventory.DeviceType", "2"}}});
        table.push_back(
            {"temperature/ProcAccelerator_Slot_" + number + "_1_sensorid_1",
             {{"Value.Value", "57"},
              {"Definitions.Associations", Inventory("add_in_card_1", WholePath(slots + number))},
              {"ThermalSensor.Location", number},
              {"ThermalSensor.SensorType", type + "GPU_COMP"},
              {"ProbeObj.Key", "no interface"}}});
    }
    Simctl({"set", "82", "1", "57"});
    ExpectShown(table);
    Simctl({"set", "82", "1", "83"});
    for (auto& row : table) {
        if (row.path.starts_with("temperature/")) {
            row.properties.front().second = "83";
        }
    }
    ExpectShown(table);
}

TEST_F(Accelerators, ABoardsSensorsStandWhereTheirNamesAndEntitiesSay) {
    std::vector<std::string> sensors{"power/UBB_Integrated_1_1_sensorid_2"};
    std::vector<std::string> states{"UBB/sensor/state/sensorid_40"};
    std::vector<Expected> table;
    const char* names[] = {"UBB_INLET_TEMP", "IBC_TEMP", "RETIMER_0_TEMP", "RETIMER_1_TEMP",
                           "RETIMER_2_TEMP"};
    for (int id = 3; id <= 7; ++id) {
        sensors.push_back("temperature/UBB_Integrated_1_1_sensorid_" + std::to_string(id));
        table.push_back({sensors.back(),
                         {{"Value.Value", "no interface"},
                          {"ProbeObj.SubType", "5"},
                          {"ProbeObj.EntityID", "42"},
                          {"ProbeObj.ObjectStatus", "2"},
                          {"ProbeObj.TargetDevKey", "UBB.Integrated.1-1"},
                          {"ProbeObj.FriendlyLDID", "Integrated Universal baseboard of Instance 1"},
                          {"ProbeObj.Key", "UBB.Integrated.1-1#sensorid_" + std::to_string(id)},
                          {"ProbeObj.ProbeLocation", names[id - 3]}}});
    }
    for (int gpu = 0; gpu < 8; ++gpu) {
        const std::string slot = std::to_string(slotOfGpu[gpu]);
        const std::string ldid = "ProcAccelerator.Slot." + slot + "-1";
        const std::string name = "GPU" + std::to_string(gpu) + "_POWER";
        sensors.push_back("power/ProcAccelerator_Slot_" + slot + "_1_sensorid_" +
                          std::to_string(11 + gpu));
        table.push_back(
            {sensors.back(),
             {{"ProbeObj.ProbeReading", std::to_string(500 + gpu)},
              {"ProbeObj.EntityID", "11"},
              {"ProbeObj.TargetDevKey", ldid},
              {"ProbeObj.FriendlyLDID", Friendly(slotOfGpu[gpu])},
              {"ProbeObj.Key", ldid + '#' + name},
              {"ProbeObj.ProbeLocation", name},
              {"Definitions.Associations",
               Inventory("accelerator_" + std::to_string(gpu + 1), WholePath(slots + slot))}}});
        const std::string id = std::to_string(41 + gpu);
        states.push_back(slots + slot + "/sensor/state/sensorid_" + id);
        table.push_back({states.back(),
                         {{"StateSensor.LDID", ldid},
                          {"StateSensor.FriendlyLDID", Friendly(slotOfGpu[gpu])},
                          {"StateSensor.Key", ldid + "#sensorid_" + id},
                          {"StateSensor.StateSensorDetails",
                           "{\"StateSensor." + id + ".1\": (\"Thermal Trip\", \"" +
                               (gpu % 2 == 0 ? "Normal" : "Thermal Trip") + "\")}"}}});
    }
    table.push_back(
        {"UBB/sensor/state/sensorid_40",
         {{"StateSensor.LDID", "UBB.Integrated.1-1"},
          {"StateSensor.FriendlyLDID", "Integrated Universal baseboard of Instance 1"},
          {"StateSensor.StateSensorDetails", R"({"UBB health": ("Health State", "Normal")})"}}});
    ExpectShown(table);
    std::ranges::sort(states);
    ExpectPaths("sensor/state/sensorid_4", states);
    auto shown = PathsWith("sensorid_");
    std::erase_if(shown, [](const std::string& path) {
        return path.find("_Slot_2") == std::string::npos && path.find("UBB_") == std::string::npos;
    });
    std::erase_if(shown, [](const std::string& path) { return path.ends_with("sensorid_1"); });
    std::ranges::sort(sensors);
    EXPECT_EQ(shown, sensors) << "besides the eight temperatures";

    // The board's health is that of all its objects.
    Simctl({"set-state", "82", "40", "1", "3"});
    std::vector<Expected> health{{"UBB", {{"Inventory.DeviceStatus", "4"}}}};
    for (const int slot : slotOfGpu) {
        health.push_back({slots + std::to_string(slot), {{"Inventory.DeviceStatus", "4"}}});
    }
    ExpectShown(health);
}

TEST(AcceleratorTable, IsReadOnceAndOutlivesAPowerOff) {
    PlayedServer server(ReadScenario(Accelerators::scenario));
    ASSERT_TRUE(WaitFor(server, listed));
    server.Simctl({"host", "off"});
    ASSERT_TRUE(
        server.WaitForObjects([](const PublishedObjects& objects) { return objects.empty(); }));
    server.Simctl({"host", "on"});
    server.Simctl({"table"});
    EXPECT_TRUE(WaitFor(server, listed));
    EXPECT_EQ(CountOf(server.Log(), tableRead), 1);
}

TEST(AcceleratorTable, IsTriedAgainAtTheNextInventoryIfItCannotBeRead) {
    const std::string scenario = ReadScenario(Accelerators::scenario);
    std::string without = scenario;
    const auto table = without.find("accelerator-table:");
    without.erase(table, without.find("platform-services:") - table);
    PlayedServer server(without);
    ASSERT_TRUE(server.WaitForLog("SCT read failed with status: 1"));
    ASSERT_TRUE(WaitFor(server, power));
    EXPECT_FALSE(server.Objects().contains(WholePath(listed)));
    server.RestartSimulator(scenario);
    server.Simctl({"pull", "5"});
    ASSERT_TRUE(server.WaitForObjects(
        [](const PublishedObjects& objects) { return !objects.contains(WholePath(power)); }));
    server.Simctl({"plug", "5"});
    EXPECT_TRUE(WaitFor(server, listed));
    EXPECT_EQ(CountOf(server.Log(), tableRead), 1);
}

} // namespace
} // namespace vantric::test
