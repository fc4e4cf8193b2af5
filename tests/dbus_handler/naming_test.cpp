// SPDX-License-Identifier: Apache-2.0
/** What sensors and devices are called, as far as no card of a scenario shows it. */
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
        {"NIC.Slot", "NIC.Slot"},
        {"..", " in Slot "}};
    for (const auto& [ldid, text] : rows) {
        EXPECT_EQ(text, MakeFriendlyLdid(ldid)) << ldid;
    }
}

constexpr auto nicPath = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_5";

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

} // namespace

} // namespace vantric
