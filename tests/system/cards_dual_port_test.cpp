/** A card as rich as they get: all that it tells is there. */
#include "system/cards_expected.hpp"

namespace vantric::test {
namespace {

class DualPort : public SharedServer<DualPort> {
public:
    static constexpr auto scenario = "dual-port.yaml";
};

TEST_F(DualPort, HasAnObjectForEachSensorInItsPlace) {
    std::map<std::string, int> places;
    const std::map<std::string, int> expected{
        {"Nic/Slot/2", 1},
        {"Nic/Slot/2/networkcontroller_1", 1},
        {"Nic/Slot/2/board_1/sensor/state", 2},
        {"Nic/Slot/2/cable_1/sensor/state", 2},
        {"Nic/Slot/2/cable_2/sensor/state", 1},
        {"Nic/Slot/2/connector_1/qsf28_1/sensor/state", 2},
        {"Nic/Slot/2/connector_1/sensor/state", 1},
        {"Nic/Slot/2/connector_2/qsf28_2/sensor/state", 2},
        {"Nic/Slot/2/connector_2/sensor/state", 1},
        {"Nic/Slot/2/networkcontroller_1/ethernet_1/sensor/state", 4},
        {"Nic/Slot/2/networkcontroller_1/ethernet_2/sensor/state", 4},
        {"Nic/Slot/2/networkcontroller_1/sensor/state", 8},
        {"Nic/Slot/2/sensor/state", 3},
        {"power", 5},
        {"temperature", 21},
    };
    Eventually([&] {
        places.clear();
        for (const auto& path : ShortPaths(server->Objects())) {
            const auto id = path.find("sensorid_");
            ++places[id == std::string::npos ? path : path.substr(0, path.rfind('/'))];
        }
        return places == expected;
    });
    EXPECT_EQ(places, expected);
}

TEST_F(DualPort, ReadsThresholdsInEveryFormat) {
    const struct {
        int sensor;
        const char *thresholds, *criticalHigh, *warningLow, *criticalLow;
    } rows[] = {
        {10, "(65, 60, 55, 5, 0, 0)", "60", "5", "nan"},             // uint8
        {11, "(0, 75, 70, 0, 251, 246)", "75", "nan", "251"},        // sint8
        {12, "(400, 120, 110, 0, 0, 0)", "120", "nan", "nan"},       // uint16
        {13, "(0, 120, 110, 0, 65496, 0)", "120", "nan", "65496"},   // sint16
        {1, "(115, 105, 95, 0, 0, 0)", "105", "nan", "nan"},         // uint32
        {30, "(0, 100, 90, -10, 0, 0)", "100", "4294967286", "nan"}, // sint32
        {31, "(0, 0, 1119092736, 0, 0, 0)", "nan", "nan", "nan"},    // real32
        {40, "(0, 75, 70, 0, 0, 0)", "75", "nan", "nan"},            // uint64
        {60, "(0, 75, 70, -5, 0, 0)", "75", "-5", "nan"},            // sint64
    };
    for (const auto& row : rows) {
        ExpectShown({{"temperature/NIC_Slot_2_sensorid_" + std::to_string(row.sensor),
                      {{"ProbeObj.ProbeThresholds", row.thresholds},
                       {"Critical.CriticalHigh", row.criticalHigh},
                       {"Warning.WarningLow", row.warningLow},
                       {"Critical.CriticalLow", row.criticalLow}}}});
    }
}

TEST_F(DualPort, TellsNamesReadingsAndStates) {
    const std::string card = "Nic/Slot/2";
    ExpectShown({
        {card,
         {{"FRU.Description", "Two QSFP56 ports, PCIe 4.0 x16, with auxiliary power"},
          {"FRU.IANA", "6796"},
          {"Inventory.FirmwareVersion", "28.41.1000"}}},
        {"temperature/NIC_Slot_2_sensorid_1", {{"ProbeObj.ProbeLocation", "Network chip"}}},
        {"temperature/NIC_Slot_2_sensorid_5",
         {{"ProbeObj.ProbeLocation", "Temperature Sensor 5"},
          {"ProbeObj.ProbeStatus", "2"}}}, // has been enabled
        {"power/NIC_Slot_2_sensorid_8",
         {{"ProbeObj.ProbeLocation", "Auxiliary power"}, {"ProbeObj.ProbeReading", "3"}}},
        {"power/NIC_Slot_2_sensorid_45", {{"ProbeObj.ProbeReading", "3"}}},
        {"temperature/NIC_Slot_2_sensorid_61", {{"ProbeObj.TargetDevKey", "NIC.Slot.2-2"}}},
        {card + "/networkcontroller_1/sensor/state/sensorid_100",
         {{"StateSensor.StateSensorDetails", R"({"Chip health": ("Health State", "Normal"), )"
                                             R"("Thermal trip": ("Thermal Trip", "Normal")})"}}},
        {card + "/networkcontroller_1/ethernet_2/sensor/state/sensorid_130",
         {{"StateSensor.StateSensorDetails", R"({"Link 2": ("Link State", "Disconnected")})"}}},
        {card + "/connector_2/qsf28_2/sensor/state/sensorid_151",
         {{"StateSensor.StateSensorDetails",
           R"({"StateSensor.151.1": ("Presence", "Present"), )"
           R"("StateSensor.151.2": ("Operational Fault Status", "Normal"), )"
           R"("StateSensor.151.3": ("Predictive Condition", "Predictive Failure")})"}}},
        {card + "/cable_2/sensor/state/sensorid_161",
         {{"StateSensor.Key", "NIC.Slot.2-2#sensorid_161"},
          {"StateSensor.StateSensorDetails",
           R"({"StateSensor.161.1": ("Presence", "Not Present")})"}}},
    });
}

} // namespace
} // namespace vantric::test
