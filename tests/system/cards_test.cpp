/** From the records of network cards to the paths, names and numbers of their objects. */
#include "system/cards_expected.hpp"

namespace vantric::test {
namespace {

class Cards : public SharedServer<Cards> {
public:
    static constexpr auto scenario = "cards.yaml";
};

/** An association with the inventory, as text. */
std::string Inventory(const std::string& name, const std::string& path) {
    return "[(\"inventory\", \"" + name + "\", \"" + WholePath(path) + "\")]";
}

std::string Type(const std::string& name) {
    return "com.korv.bmc.Thermal.ThermalSensor.dev_types." + name;
}

TEST_F(Cards, HaveTheseObjectsAndNoOthers) {
    const std::vector<std::string> expected{
        "FC/Slot/8",
        "FC/Slot/8/networkcontroller_1",
        "FC/Slot/8/networkcontroller_1/fibre_channel_2/sensor/state/sensorid_21",
        "FC/Slot/8/networkcontroller_1/sensor/state/sensorid_20",
        "Nic/Embedded/1",
        "Nic/Embedded/1/ethernet_2/sensor/state/sensorid_9",
        "Nic/Embedded/1/networkcontroller_1",
        "Nic/Slot/3",
        "Nic/Slot/3/networkcontroller_1",
        "Nic/Slot/3/networkcontroller_1/ethernet_1/sensor/state/sensorid_9",
        "Nic/Slot/3/networkcontroller_1/ethernet_1/sfp_8079_1/sensor/state/sensorid_19",
        "Nic/Slot/3/networkcontroller_1/ethernet_2/sensor/state/sensorid_10",
        "Nic/Slot/3/networkcontroller_1/sensor/state/sensorid_20",
        "Nic/Slot/3/networkcontroller_1/sensor/state/sensorid_23",
        "Nic/Slot/3/sensor/state/sensorid_21",
        "Nic/Slot/5",
        "Nic/Slot/5/connector_3/sfp_8079_1/sensor/state/sensorid_ctrl2_19",
        "Nic/Slot/5/ethernet_1/sensor/state/sensorid_ctrl1_9",
        "Nic/Slot/5/networkcontroller_1",
        "Nic/Slot/5/networkcontroller_2",
        "Nic/Slot/5/networkcontroller_2/connector_4/unkknown_connector_type_1/sensor/state/"
        "sensorid_ctrl2_22",
        "Nic/Slot/5/networkcontroller_2/ethernet_3/sensor/state/sensorid_ctrl2_9",
        "Nic/Slot/5/networkcontroller_2/sensor/state/sensorid_ctrl2_20",
        "Nic/Slot/5/networkcontroller_2/sensor/state/sensorid_ctrl2_21",
        "Nic/Slot/5/networkcontroller_2/sensor/state/sensorid_ctrl2_23",
        "Nic/Slot/6",
        "Nic/Slot/6/networkcontroller_1",
        "Nic/Slot/6/networkcontroller_1/sensor/state/sensorid_20",
        "Nic/Slot/6/networkcontroller_1/sensor/state/sensorid_21",
        "Nic/Slot/6/networkcontroller_1/sensor/state/sensorid_9",
        "Nic/Slot/6/sensor/state/sensorid_19",
        "Nic/Slot/7",
        "Nic/Slot/7/networkcontroller_1",
        "Nic/Slot/9",
        "Nic/Slot/9/connector_1/qsf28_1/sensor/state/sensorid_9",
        "Nic/Slot/9/connector_2/qsf28_2/sensor/state/sensorid_10",
        "Nic/Slot/9/networkcontroller_1",
        "power/FC_Slot_8_sensorid_2",
        "power/NIC_Slot_3_sensorid_6",
        "power/NIC_Slot_5_sensorid_ctrl1_6",
        "power/NIC_Slot_5_sensorid_ctrl2_6",
        "power/NIC_Slot_5_sensorid_ctrl2_7",
        "power/NIC_Slot_6_sensorid_6",
        "power/NIC_Slot_9_sensorid_8",
        "temperature/FC_Slot_8_sensorid_1",
        "temperature/FC_Slot_8_sensorid_12",
        "temperature/NIC_Embedded_1_sensorid_1",
        "temperature/NIC_Embedded_1_sensorid_5",
        "temperature/NIC_Embedded_1_sensorid_6",
        "temperature/NIC_Embedded_1_sensorid_7",
        "temperature/NIC_Embedded_1_sensorid_8",
        "temperature/NIC_Slot_3_sensorid_11",
        "temperature/NIC_Slot_3_sensorid_5",
        "temperature/NIC_Slot_3_sensorid_7",
        "temperature/NIC_Slot_3_sensorid_8",
        "temperature/NIC_Slot_5_sensorid_ctrl1_5",
        "temperature/NIC_Slot_5_sensorid_ctrl2_5",
        "temperature/NIC_Slot_5_sensorid_ctrl2_55",
        "temperature/NIC_Slot_5_sensorid_ctrl2_8",
        "temperature/NIC_Slot_6_sensorid_5",
        "temperature/NIC_Slot_9_sensorid_5",
        "temperature/NIC_Slot_9_sensorid_7",
    };
    std::vector<std::string> paths;
    Eventually([&] {
        paths = ShortPaths(server->Objects());
        return paths == expected;
    });
    EXPECT_EQ(paths, expected);
    EXPECT_TRUE(server->WaitForLog("Invalid/Not supported EntityType: 204", 2));
}

TEST_F(Cards, TellTheirNumericSensors) {
    ExpectShown({
        {"temperature/NIC_Slot_3_sensorid_5",
         {{"Value.Value", "41"},
          {"Value.Unit", "xyz.openbmc_project.Sensor.Value.Unit.DegreesC"},
          {"Value.MaxValue", "0"},
          {"Warning.WarningHigh", "70"},
          {"Warning.WarningLow", "nan"},
          {"Critical.CriticalHigh", "80"},
          {"Availability.Available", "true"},
          {"OperationalStatus.Functional", "true"},
          {"Definitions.Associations",
           Inventory("ethernet_1", "Nic/Slot/3/networkcontroller_1/ethernet_1")},
          {"ThermalSensor.SensorType", Type("NIC_ASIC")},
          {"ThermalSensor.LocatorType", "6"},
          {"ThermalSensor.Location", "3"},
          {"ThermalSensor.DeviceType", ""},
          {"ThermalSensor.FailedTimestamp", "0"},
          {"ProbeObj.SubType", "5"},
          {"ProbeObj.EntityID", "42"},
          {"ProbeObj.TargetDevKey", "NIC.Slot.3-1"},
          {"ProbeObj.FriendlyLDID", "NIC in Slot 3 Port 1"},
          {"ProbeObj.Key", "NIC.Slot.3-1#sensorid_5"},
          {"ProbeObj.ProbeLocation", "Temperature Sensor 5"},
          {"ProbeObj.SensorNumber", "5"},
          {"ProbeObj.ProbeReading", "41"},
          {"ProbeObj.ProbeStatus", "2"},
          {"ProbeObj.ObjectStatus", "2"},
          {"ProbeObj.ProbeThresholds", "(90, 80, 70, 0, 0, 0)"}}},
        {"power/NIC_Slot_3_sensorid_6",
         {{"Value.Value", "no interface"},
          {"ThermalSensor.Instance", "no interface"},
          {"Definitions.Associations",
           Inventory("networkcontroller_1", "Nic/Slot/3/networkcontroller_1")},
          {"ProbeObj.SubType", "49"},
          {"ProbeObj.TargetDevKey", "NIC.Slot.3"},
          {"ProbeObj.FriendlyLDID", "NIC in Slot 3"},
          {"ProbeObj.Key", "NIC.Slot.3#sensorid_6"},
          {"ProbeObj.ProbeLocation", "Power Sensor 6"},
          {"ProbeObj.ProbeReading", "22"},
          {"ProbeObj.ProbeThresholds", "(0, 0, 60, 0, 0, 0)"}}},
        {"temperature/NIC_Slot_3_sensorid_7",
         {{"Definitions.Associations",
           Inventory("sfp_8079_1", "Nic/Slot/3/networkcontroller_1/ethernet_1/sfp_8079_1")},
          {"ThermalSensor.SensorType", Type("NIC_OPTICS")},
          {"ProbeObj.Key", "NIC.Slot.3-1#sensorid_7"},
          {"ProbeObj.ProbeLocation", "Cage"}}},
        {"temperature/NIC_Slot_3_sensorid_8", {{"ProbeObj.Key", "NIC.Slot.3-2#sensorid_8"}}},
        // On the card for want of a better place.
        {"temperature/NIC_Slot_3_sensorid_11",
         {{"Definitions.Associations", Inventory("add_in_card_1", "Nic/Slot/3")},
          {"ThermalSensor.SensorType", Type("NIC_ASIC")},
          {"ProbeObj.Key", "NIC.Slot.3-1#sensorid_11"}}},
        // Both controllers of a card.
        {"temperature/NIC_Slot_5_sensorid_ctrl1_5",
         {{"Value.Value", "51"},
          {"Definitions.Associations", Inventory("ethernet_1", "Nic/Slot/5/ethernet_1")},
          {"ProbeObj.Key", "NIC.Slot.5-1#sensorid_ctrl1_5"},
          {"ProbeObj.ProbeLocation", "Controller 1 Temperature Sensor 5"}}},
        {"power/NIC_Slot_5_sensorid_ctrl1_6",
         {{"ProbeObj.ProbeReading", "11"},
          {"Definitions.Associations", Inventory("networkcontroller_1", "Nic/Slot/5")},
          {"ProbeObj.ProbeLocation", "Controller 1 Power Sensor 6"}}},
        {"temperature/NIC_Slot_5_sensorid_ctrl2_5",
         {{"Value.Value", "52"},
          {"Definitions.Associations", Inventory("ethernet3", "Nic/Slot/5/networkcontroller_2")},
          {"ProbeObj.Key", "NIC.Slot.5-3#sensorid_ctrl2_5"},
          {"ProbeObj.FriendlyLDID", "NIC in Slot 5 Port 3"},
          {"ProbeObj.ProbeLocation", "Controller 2 Temperature Sensor 5"}}},
        {"power/NIC_Slot_5_sensorid_ctrl2_6",
         {{"ProbeObj.ProbeReading", "12"},
          {"Definitions.Associations",
           Inventory("networkcontroller2", "Nic/Slot/5/networkcontroller_2")},
          {"ProbeObj.Key", "NIC.Slot.5#sensorid_ctrl2_6"}}},
        {"power/NIC_Slot_5_sensorid_ctrl2_7",
         {{"Definitions.Associations", Inventory("ethernet3", "Nic/Slot/5/networkcontroller_2")},
          {"ProbeObj.Key", "NIC.Slot.5-3#sensorid_ctrl2_7"}}},
        {"temperature/NIC_Slot_5_sensorid_ctrl2_8",
         {{"Definitions.Associations", Inventory("ethernet_4", "Nic/Slot/5/networkcontroller_2")},
          {"ThermalSensor.SensorType", Type("NIC_OPTICS")},
          {"ProbeObj.Key", "NIC.Slot.5-4#sensorid_ctrl2_8"}}},
        // The readings of 5 and 55 stay apart.
        {"temperature/NIC_Slot_5_sensorid_ctrl2_55",
         {{"Value.Value", "53"}, {"ProbeObj.Key", "NIC.Slot.5-5#sensorid_ctrl2_55"}}},
        // Without a tree.
        {"temperature/NIC_Slot_6_sensorid_5",
         {{"Definitions.Associations",
           Inventory("networkcontroller", "Nic/Slot/6/networkcontroller_1")},
          {"ProbeObj.TargetDevKey", "NIC.Slot.6"}}},
        {"power/NIC_Slot_6_sensorid_6", {{"ProbeObj.ProbeLocation", "Board power"}}},
        // A module in the second connector of an OCP card.
        {"temperature/NIC_Slot_9_sensorid_5",
         {{"ThermalSensor.SensorType", Type("NDC_ASIC")}, {"ThermalSensor.DeviceType", "OCP3"}}},
        {"temperature/NIC_Slot_9_sensorid_7",
         {{"Definitions.Associations", Inventory("ethernet_2", "Nic/Slot/9/connector_2/qsf28_1")},
          {"ThermalSensor.SensorType", Type("NDC_OPTICS")},
          {"ThermalSensor.DeviceType", "OCP3"},
          {"ProbeObj.Key", "NIC.Slot.9-2#sensorid_7"}}},
        {"power/NIC_Slot_9_sensorid_8",
         {{"Definitions.Associations", Inventory("ethernet_2", "Nic/Slot/9/connector_2/qsf28_1")},
          {"ProbeObj.Key", "NIC.Slot.9-2#sensorid_8"}}},
        // A card of another kind, with compact sensors.
        {"temperature/FC_Slot_8_sensorid_1",
         {{"Value.Value", "61"},
          {"ProbeObj.Key", "FC.Slot.8#sensorid_1"},
          {"ProbeObj.ProbeLocation", "Chip"},
          {"ProbeObj.ProbeThresholds", "(105, 95, 85, 5, -5, -15)"},
          {"Critical.CriticalLow", "-5"}}},
        {"power/FC_Slot_8_sensorid_2",
         {{"Definitions.Associations",
           Inventory("fibre_channel_1", "FC/Slot/8/networkcontroller_1/fibre_channel_1")},
          {"ProbeObj.TargetDevKey", "FC.Slot.8-1"},
          {"ProbeObj.FriendlyLDID", "FC in Slot 8 Port 1"},
          {"ProbeObj.ProbeLocation", "power2"}}},
        // The embedded controller.
        {"temperature/NIC_Embedded_1_sensorid_5",
         {{"Definitions.Associations", Inventory("ethernet_2", "Nic/Embedded/1/ethernet_2")},
          {"ThermalSensor.SensorType", Type("NDC_ASIC")},
          {"ThermalSensor.DeviceType", "EmbeddedLOM"},
          {"ThermalSensor.LocatorType", "2"},
          {"ThermalSensor.Location", "1"},
          {"ProbeObj.TargetDevKey", "NIC.Embedded.1-2"},
          {"ProbeObj.FriendlyLDID", "Embedded NIC 1 Port 2"},
          {"ProbeObj.Key", "NIC.Embedded.1-2#sensorid_5"}}},
        {"temperature/NIC_Embedded_1_sensorid_7",
         {{"ThermalSensor.SensorType", Type("NDC_OPTICS")},
          {"ThermalSensor.DeviceType", "EmbeddedLOM"}}},
        {"temperature/NIC_Embedded_1_sensorid_1",
         {{"ThermalSensor.SensorType", Type("NIC_ASIC")}, {"ThermalSensor.DeviceType", ""}}},
        {"temperature/NIC_Embedded_1_sensorid_6",
         {{"ThermalSensor.SensorType", Type("NIC_OPTICS")}, {"ThermalSensor.DeviceType", ""}}},
        {"temperature/NIC_Embedded_1_sensorid_8",
         {{"ThermalSensor.SensorType", Type("UNKNOWN")}, {"ThermalSensor.Instance", "151"}}},
    });
}

TEST_F(Cards, TellTheirStateSensors) {
    const std::string tree = "Nic/Slot/3/networkcontroller_1";
    const std::string second = "Nic/Slot/5/networkcontroller_2";
    ExpectShown({
        {tree + "/ethernet_1/sensor/state/sensorid_9",
         {{"StateSensor.LDID", "NIC.Slot.3-1"},
          {"StateSensor.FriendlyLDID", "NIC in Slot 3 Port 1"},
          {"StateSensor.SensorID", "9"},
          {"StateSensor.StateSensorDetails", R"({"StateSensor.9.1": ("Link State", "Connected")})"},
          {"StateSensor.Key", "NIC.Slot.3-1#sensorid_9"}}},
        {tree + "/ethernet_2/sensor/state/sensorid_10",
         {{"StateSensor.Key", "NIC.Slot.3-2#sensorid_10"},
          {"StateSensor.StateSensorDetails",
           R"({"StateSensor.10.1": ("Link State", "Disconnected")})"}}},
        {tree + "/ethernet_1/sfp_8079_1/sensor/state/sensorid_19",
         {{"StateSensor.Key", "NIC.Slot.3-1#sensorid_19"}}},
        {tree + "/sensor/state/sensorid_20",
         {{"StateSensor.LDID", "NIC.Slot.3"},
          {"StateSensor.FriendlyLDID", "NIC in Slot 3"},
          {"StateSensor.Key", "NIC.Slot.3#sensorid_20"},
          {"StateSensor.StateSensorDetails",
           R"({"Foreign": ("", ""), "Health": ("Health State", "Normal"), )"
           R"("Thermal trip": ("Thermal Trip", "Normal")})"}}},
        {tree + "/sensor/state/sensorid_23", {{"StateSensor.StateSensorDetails", "{}"}}},
        {"Nic/Slot/3/sensor/state/sensorid_21",
         {{"StateSensor.Key", "NIC.Slot.3#sensorid_21"},
          {"StateSensor.StateSensorDetails",
           R"({"StateSensor.21.1": ("Operational Fault Status", "Normal"), )"
           R"("StateSensor.21.2": ("OEM State Set", "")})"}}},
        {"Nic/Slot/5/ethernet_1/sensor/state/sensorid_ctrl1_9",
         {{"StateSensor.Key", "NIC.Slot.5-1#sensorid_ctrl1_9"}}},
        {second + "/ethernet_3/sensor/state/sensorid_ctrl2_9",
         {{"StateSensor.LDID", "-3"},
          {"StateSensor.FriendlyLDID", "-3"},
          {"StateSensor.Key", "-3#sensorid_ctrl2_9"},
          {"StateSensor.StateSensorDetails",
           R"({"StateSensor.9.1": ("Link State", "Connected")})"}}},
        {second + "/sensor/state/sensorid_ctrl2_20",
         {{"StateSensor.StateSensorDetails",
           R"({"StateSensor.20.1": ("Health State", "Critical")})"}}},
        {"Nic/Slot/6/networkcontroller_1/sensor/state/sensorid_9",
         {{"StateSensor.LDID", ""},
          {"StateSensor.FriendlyLDID", ""},
          {"StateSensor.Key", "#sensorid_9"},
          {"StateSensor.StateSensorDetails",
           R"({"StateSensor.9.1": ("Health State", "Normal")})"}}},
        {"Nic/Slot/9/connector_1/qsf28_1/sensor/state/sensorid_9",
         {{"StateSensor.Key", "NIC.Slot.9-1#sensorid_9"}}},
        {"Nic/Slot/9/connector_2/qsf28_2/sensor/state/sensorid_10",
         {{"StateSensor.LDID", "NIC.Slot.9-2"}}},
        {"Nic/Embedded/1/ethernet_2/sensor/state/sensorid_9",
         {{"StateSensor.LDID", "NIC.Embedded.2-1"},
          {"StateSensor.FriendlyLDID", "Embedded NIC 1 Port 2"},
          {"StateSensor.Key", "NIC.Embedded.1-2#sensorid_9"}}},
    });
}

TEST_F(Cards, TellTheirInventory) {
    ExpectShown({
        {"Nic/Slot/3",
         {{"Inventory.LDID", "NIC.Slot.3"},
          {"Inventory.FriendlyLDID", "NIC in Slot 3"},
          {"Inventory.DeviceType", "9"},
          {"Inventory.AcceleratorAssociation", "10"},
          {"Inventory.CPUAffinity", "1"},
          {"Inventory.FirmwareVersion", "28.39.1002"},
          {"FRU.ChassisType", "Add-in card"},
          {"FRU.Model", "MX-200"},
          {"FRU.PN", "PN-7781"},
          {"FRU.SN", "SN300001"},
          {"FRU.Manufacturer", "Example Networks"},
          {"FRU.ManufacturerDate", "2021-03-12 - 07:05:09"},
          {"FRU.Vendor", "Example"},
          {"FRU.Name", "200G Ethernet Adapter"},
          {"FRU.SKU", "MX-200-B"},
          {"FRU.Version", "A2"},
          {"FRU.AssetTag", "4711"},
          {"FRU.Description", "Two ports of 100 Gb/s"},
          {"FRU.ECLevel", "EC7"},
          {"FRU.Other", "none"},
          {"FRU.IANA", "6796"}}},
        {"Nic/Slot/3/networkcontroller_1", {{"ControllerInventory.CPUAffinity", "1"}}},
        {"Nic/Slot/5", {{"FRU.Model", "no interface"}, {"Inventory.CPUAffinity", "2"}}},
        {"Nic/Slot/5/networkcontroller_2", {{"ControllerInventory.CPUAffinity", "2"}}},
        // A table of another record only: there is FRU data, and nothing in it.
        {"Nic/Slot/6", {{"FRU.ChassisType", ""}, {"FRU.IANA", "0"}}},
        {"FC/Slot/8",
         {{"Inventory.LDID", "FC.Slot.8"},
          {"Inventory.FriendlyLDID", "FC in Slot 8"},
          {"Inventory.DeviceType", "9"},
          {"FRU.Model", "FC-32"},
          {"FRU.IANA", "4287"}}},
        {"Nic/Embedded/1",
         {{"Inventory.LDID", "NIC.Embedded.1"},
          {"Inventory.FriendlyLDID", "NIC in Slot 1"},
          {"Inventory.FirmwareVersion", "9.50"}}},
    });
}

TEST_F(Cards, NumberTheirSensorsFrom151InEachType) {
    ExpectShown({{"temperature/FC_Slot_8_sensorid_12", {{"ProbeObj.ProbeReading", "75"}}}});
    std::map<std::string, std::vector<int>> instances;
    for (const auto& [path, interfaces] : server->Objects()) {
        if (const auto thermal = interfaces.find("com.korv.bmc.Thermal.ThermalSensor");
            thermal != interfaces.end()) {
            instances[thermal->second.at("SensorType")].push_back(
                std::stoi(thermal->second.at("Instance")));
        }
    }
    EXPECT_EQ(instances.size(), 5U);
    for (auto& [type, numbers] : instances) {
        std::ranges::sort(numbers);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            EXPECT_EQ(numbers[i], 151 + static_cast<int>(i)) << type;
        }
    }
}

} // namespace
} // namespace vantric::test
