/** What sensors and devices are called: friendly LDIDs, probe keys and locations, state sensors. */
#include "dbus_handler/initial_properties.hpp"
#include "vocabulary/ldid.hpp"

#include <gtest/gtest.h>

namespace vantric {

namespace {

template <typename Value, typename Bag>
Value Get(const Bag& bag, const char* name) {
    return std::get<Value>(bag.at(name));
}

TEST(FriendlyLdid, IsATextForPeople) {
    const std::map<std::string, std::string> rows{
        {"NIC.Slot.3", "NIC in Slot 3"},
        {"NIC.Embedded.1", "NIC in Slot 1"},
        {"NIC.Slot.3-1", "NIC in Slot 3 Port 1"},
        {"NIC.Embedded.1-2", "Embedded NIC 1 Port 2"},
        {"ProcAccelerator.Slot.21-1", "Proc Accelerator Controller in Slot 21 of Instance 1"},
        {"ProcAccelerator.Slot.21", "Proc Accelerator Controller in Slot 21"},
        {"CXLMemory.Slot.5", "CXL Memory in Slot 5"},
        {"UBB.Integrated.1-1", "Integrated Universal baseboard of Instance 1"},
        {"FC.Slot.2-1-4", "FC in Slot 2 Port 1-4"},
        {"FC.Slot.2.7", "FC in Slot 2.7"},
        {"NIC.Slot", "NIC.Slot"},
        {"UBB", "UBB"},
        {"", ""},
        {"..", " in Slot "}};
    for (const auto& [ldid, text] : rows) {
        EXPECT_EQ(text, MakeFriendlyLdid(ldid)) << ldid;
    }
}

struct Probe {
    std::uint8_t kind, unit;
    std::uint16_t id, instance, entityType;
    const char* name;
    const char* path;
    const char* key;
    const char* location;
    const char* target;
};

constexpr auto nicPath = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_5";
constexpr auto ctrl1Path = "/xyz/openbmc_project/sensors/temperature/X_sensorid_ctrl1_5";
constexpr auto ctrl2Path = "/xyz/openbmc_project/sensors/power/X_sensorid_ctrl2_5";
constexpr auto gpuPath = "/xyz/openbmc_project/sensors/temperature/ProcAccelerator_Slot_5_x";
constexpr auto gpuPowerPath = "/xyz/openbmc_project/sensors/power/ProcAccelerator_Slot_5_x";

TEST(ProbeProperties, NameTheSensor) {
    const Probe rows[] = {
        {1, 2, 5, 1, 300, "", nicPath, "L-1#sensorid_5", "Temperature Sensor 5", "L-1"},
        {3, 7, 5, 0, 300, "", nicPath, "L#sensorid_5", "Power Sensor 5", "L"},
        {3, 9, 5, 2, 144, "", nicPath, "L#sensorid_5", "", "L"},
        {3, 2, 5, 2, 145, "Chip", nicPath, "L-2#sensorid_5", "Chip", "L-2"},
        {1, 2, 5, 0, 60, "", ctrl1Path, "L#sensorid_ctrl1_5", "Controller 1 Temperature Sensor 5",
         "L"},
        {3, 7, 5, 0, 60, "", ctrl2Path, "L#sensorid_ctrl2_5", "Controller 2 Power Sensor 5", "L"},
        {3, 0, 5, 0, 60, "", ctrl2Path, "L#sensorid_ctrl2_5", "Controller 2 ", "L"},
        {3, 7, 5, 3, 68, "Pwr", gpuPowerPath, "L#Pwr", "Pwr", "L"},
        {1, 2, 5, 3, 68, "Core", gpuPath, "L#Core", "System Board Proc Accel1 Temp", "L"},
    };
    for (const auto& row : rows) {
        __Sensor sensor;
        sensor.sensorKind = row.kind;
        sensor.baseUnit = row.unit;
        sensor.sensorId = row.id;
        sensor.entityInstance = row.instance;
        sensor.entityType = row.entityType;
        sensor.name = row.name;
        ThermalTyping typing;
        const auto bag = BuildProbeProperties(sensor, "L", row.path, typing);
        EXPECT_EQ(row.key, Get<std::string>(bag, "Key"));
        EXPECT_EQ(row.location, Get<std::string>(bag, "ProbeLocation")) << row.key;
        EXPECT_EQ(row.target, Get<std::string>(bag, "TargetDevKey")) << row.key;
        EXPECT_EQ(row.target, Get<std::string>(bag, "meta-NonCached")) << row.key;
        const bool hasUnit = row.unit == 2 || row.unit == 7;
        EXPECT_EQ(hasUnit, bag.contains("SubType")) << row.key;
        if (hasUnit) {
            EXPECT_EQ(row.unit == 2 ? 5U : 49U, Get<std::uint32_t>(bag, "SubType")) << row.key;
        }
        const bool accelerator = row.path == gpuPath || row.path == gpuPowerPath;
        EXPECT_EQ(accelerator ? 11 : 42, Get<std::uint8_t>(bag, "EntityID")) << row.key;
    }
}

TEST(ProbeProperties, NameNoPortOfAnEntityThatHasNone) {
    const std::map<std::uint16_t, const char*> rows{
        {144, "L"},   {148, "L"},   {149, "L"},     {68, "L"},      {32836, "L"}, {79, "L"},
        {32917, "L"}, {24576, "L"}, {143, "L-260"}, {150, "L-260"}, {0, "L-260"}, {80, "L-260"}};
    for (const auto& [entityType, target] : rows) {
        __Sensor sensor;
        sensor.entityType = entityType;
        sensor.entityInstance = 260;
        ThermalTyping typing;
        const auto bag = BuildProbeProperties(sensor, "L", nicPath, typing);
        EXPECT_EQ(target, Get<std::string>(bag, "TargetDevKey")) << entityType;
    }
}

TEST(ProbeProperties, CutThresholdsTo32Bits) {
    __Sensor sensor;
    sensor.upperFatal = 0x1'0000'0001;
    sensor.upperCritical = 2;
    sensor.upperWarning = 3;
    sensor.lowerWarning = -4;
    sensor.lowerCritical = -5;
    sensor.lowerFatal = 0x8000'0000;
    ThermalTyping typing;
    const auto bag = BuildProbeProperties(sensor, "L", nicPath, typing);
    EXPECT_EQ((ProbeThresholds{1, 2, 3, -4, -5, std::numeric_limits<std::int32_t>::min()}),
              Get<ProbeThresholds>(bag, "ProbeThresholds"));
}

struct StateRow {
    const char* secondLdid;
    std::uint16_t instance;
    const char* path;
    const char* ldid;
    const char* friendly;
    const char* key;
};

TEST(StateSensorProperties, NameTheSensor) {
    const StateRow rows[] = {
        {"NIC.Slot.3", 0, "/i/sensor/state/sensorid_9", "NIC.Slot.3", "NIC in Slot 3",
         "NIC.Slot.3#sensorid_9"},
        {"NIC.Slot.3", 2, "/i/sensor/state/sensorid_9", "NIC.Slot.3-2", "NIC in Slot 3 Port 2",
         "NIC.Slot.3-2#sensorid_9"},
        {"NIC.Embedded.1", 2, "/i/sensor/state/sensorid_9", "NIC.Embedded.2-1",
         "Embedded NIC 1 Port 2", "NIC.Embedded.1-2#sensorid_9"},
        {"NIC.Embedded.1", 0, "/i/sensor/state/sensorid_ctrl1_9", "NIC.Embedded.1", "NIC in Slot 1",
         "NIC.Embedded.1#sensorid_ctrl1_9"},
        {"Embedded", 2, "/i/sensor/state/sensorid_ctrl2_9", "2-Embedded", "Embedded-2",
         "Embedded-2#sensorid_ctrl2_9"},
        {"", 0, "/i/sensor/state/sensorid_ctrl2_9", "", "", "#sensorid_ctrl2_9"},
    };
    for (const auto& row : rows) {
        StateSensorRequest request;
        request.secondLdid = row.secondLdid;
        request.entityInstance = row.instance;
        request.sensorId = 9;
        const auto bag = BuildStateSensorProperties(request, row.path);
        EXPECT_EQ(row.ldid, Get<std::string>(bag, "LDID"));
        EXPECT_EQ(row.friendly, Get<std::string>(bag, "FriendlyLDID"));
        EXPECT_EQ(row.key, Get<std::string>(bag, "Key"));
        EXPECT_EQ(9U, Get<std::uint32_t>(bag, "SensorID"));
    }
}

TEST(StateDetails, StandInForListsThatDontFit) {
    using Strings = std::vector<std::string>;
    const auto details = [](Strings names, Strings sets, Strings values, std::size_t count) {
        StateSensorRequest request;
        request.memberNames = std::move(names);
        request.stateSetNames = std::move(sets);
        request.valueTexts = std::move(values);
        return BuildStateDetails(request, count);
    };
    const std::string none = "Unavailable";
    EXPECT_EQ((StateSensorDetails{{"a", {none, none}}, {"b", {none, none}}}),
              details({"a", "b"}, {}, {}, 2));
    EXPECT_EQ((StateSensorDetails{{"a", {"s", none}}, {"b", {"t", none}}, {"c", {"u", none}}}),
              details({"a", "b", "c"}, {"s", "t", "u"}, {"1", "2"}, 3));
    EXPECT_EQ((StateSensorDetails{{none, {"t", "2"}}}), details({"a"}, {"s", "t"}, {"1", "2"}, 2));
    EXPECT_EQ((StateSensorDetails{{"a", {"t", "2"}}}),
              details({"a", "a"}, {"s", "t"}, {"1", "2"}, 2));
    EXPECT_EQ(StateSensorDetails{}, details({}, {}, {}, 0));
    EXPECT_EQ((StateSensorDetails{{"\xEF\xBF\xBD", {"s", "1"}}}),
              details({"\xFF"}, {"s"}, {std::string("1\0z", 3)}, 1));
}

TEST(AcceleratorAssociation, IsNamedByThePath) {
    const std::string root = "/xyz/openbmc_project/inventory/system/accelerator/";
    EXPECT_EQ("ProcAccelerator", AcceleratorAssociationName(root + "ProcAccelerator/Slot/5"));
    EXPECT_EQ("ProcAccelerator", AcceleratorAssociationName(root + "ProcAccelerator"));
    EXPECT_EQ("", AcceleratorAssociationName("/xyz/openbmc_project/inventory/system/board/x"));
}

} // namespace

} // namespace vantric
