#include "monitor/objects.hpp"

#include <gtest/gtest.h>

namespace {

using namespace monitor;
using namespace monitor::test;

std::int64_t Reading(const ObjectModel& model) {
    const auto* reading =
        model.Objects().at(sensorPath).Get<std::int64_t>(probeInterface, "ProbeReading");
    return reading == nullptr ? -1 : *reading;
}

TEST(ObjectModel, JoinsTheInterfacesOfAnObjectAndDropsItWithTheLast) {
    ObjectModel model;
    model.AddInterfaces(sensorPath, {{valueInterface, {}}});
    model.AddInterfaces(sensorPath, {{probeInterface, PowerProbe()}});
    model.RemoveInterfaces(sensorPath, {valueInterface, "not.there"});
    EXPECT_EQ(model.Objects().at(sensorPath).Find(valueInterface), nullptr);
    EXPECT_EQ(Reading(model), 12);
    model.RemoveInterfaces(sensorPath, {probeInterface});
    EXPECT_TRUE(model.Objects().empty());
    model.RemoveInterfaces(sensorPath, {probeInterface});
    EXPECT_TRUE(model.EverPublished());
}

TEST(ObjectModel, TakesChangesOfWhatItKnowsOnly) {
    ObjectModel model;
    model.ChangeProperties(sensorPath, probeInterface, {{"ProbeReading", Number(5)}});
    EXPECT_TRUE(model.Objects().empty());
    EXPECT_FALSE(model.EverPublished());

    model.AddInterfaces(sensorPath, {{probeInterface, PowerProbe()}});
    model.ChangeProperties(sensorPath, probeInterface, {{"ProbeReading", Number(77)}});
    model.ChangeProperties(sensorPath, valueInterface, {{"Value", 1.0}});
    EXPECT_EQ(Reading(model), 77);
    EXPECT_EQ(model.Objects().at(sensorPath).Find(valueInterface), nullptr);
    EXPECT_EQ(model.Objects().at(sensorPath).Text(probeInterface, "TargetDevKey"), "NIC.Slot.3");
}

TEST(ObjectModel, CountsABareNodeAsNothing) {
    ObjectModel model;
    model.AddInterfaces(sensorPath, {});
    model.AddInterfaces(sensorPath, {{"org.freedesktop.DBus.Peer", {}}});
    EXPECT_TRUE(model.Objects().empty());
    EXPECT_FALSE(model.EverPublished());
}

} // namespace
