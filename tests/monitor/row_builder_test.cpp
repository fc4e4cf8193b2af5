#include "monitor/row_builder.hpp"

#include "monitor/objects.hpp"

#include <gmock/gmock.h>

#include <limits>

namespace {

using namespace monitor;
using namespace monitor::test;
using testing::ElementsAre;
using testing::IsEmpty;

/// A row's cells in one text.
std::string Line(const Row& row) {
    return row.card + '|' + row.object + '|' + row.value + '|' + row.unit + '|' + row.status + '|' +
           row.health;
}

std::vector<std::string> Lines(const ObjectModel& model) {
    std::vector<std::string> lines;
    for (const Row& row : BuildRows(model)) {
        lines.push_back(Line(row));
    }
    return lines;
}

std::vector<std::string> Lines(const std::string& path, const Interfaces& interfaces) {
    ObjectModel model;
    model.AddInterfaces(path, interfaces);
    return Lines(model);
}

struct Bend {
    const char* interface;
    const char* property;
    Value value;
    const char* expected; ///< value, unit, status and health
};

TEST(RowBuilder, ReadsSensorsOfEachComposition) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::string unit = "xyz.openbmc_project.Sensor.Value.Unit.";
    const Interfaces thermal = ThermalSensor();
    const Interfaces probe{{probeInterface, PowerProbe()}};
    const std::pair<Interfaces, std::vector<Bend>> sensors[] = {
        {thermal,
         {
             {valueInterface, "Value", 2147483647.0, "n/a|C|no reading|ok"},
             {valueInterface, "Value", nan, "n/a|C|no reading|ok"},
             {valueInterface, "Value", Text("warm"), "n/a|C|no reading|ok"},
             {valueInterface, "Value", 0.1 + 0.2, "0.3|C|ok|ok"},
             {valueInterface, "Value", -12.0, "-12|C|ok|ok"},
             {valueInterface, "Value", 100.0, "100|C|ok|ok"},
             {valueInterface, "Unit", Text(unit + "Watts"), "41|W|ok|ok"},
             {valueInterface, "Unit", Text(unit + "Volts"), "41|Volts|ok|ok"},
             {availabilityInterface, "Available", false, "41|C|unavailable|ok"},
             {operationalInterface, "Functional", false, "41|C|not functional|ok"},
             {warningInterface, "WarningAlarmHigh", true, "41|C|ok|warning"},
             {warningInterface, "WarningAlarmLow", true, "41|C|ok|warning"},
             {criticalInterface, "CriticalAlarmHigh", true, "41|C|ok|critical"},
             {criticalInterface, "CriticalAlarmLow", true, "41|C|ok|critical"},
         }},
        {probe,
         {
             {probeInterface, "ProbeReading", Number(0x7fffffff), "n/a|W|no reading|ok"},
             {probeInterface, "ProbeReading", Number(-7), "-7|W|ok|ok"},
             {probeInterface, "UnitModifier", Number(2), "1200|W|ok|ok"},
             {probeInterface, "UnitModifier", Number(0xff), "1.2|W|ok|ok"},
             {probeInterface, "SubType", Number(5), "12|C|ok|ok"},
             {probeInterface, "SubType", Number(0), "12||ok|ok"},
             {probeInterface, "ProbeStatus", Number(0), "12|W|unavailable|ok"},
             {probeInterface, "ObjectStatus", Number(6), "12|W|ok|unknown"},
         }}};
    for (const auto& [good, bends] : sensors) {
        const std::string name = good.contains(probeInterface) ? "NIC in Slot 3|Power Sensor 6|"
                                                               : "NIC_Slot_3|sensorid_5|";
        for (const Bend& bend : bends) {
            Interfaces sensor = good;
            sensor[bend.interface][bend.property] = bend.value;
            EXPECT_THAT(Lines(sensorPath, sensor), ElementsAre(name + bend.expected))
                << bend.property;
        }
    }
    Interfaces both = ThermalSensor(41.5);
    both[probeInterface] = PowerProbe();
    EXPECT_THAT(Lines(sensorPath, both), ElementsAre("NIC in Slot 3|Power Sensor 6|41.5|C|ok|ok"));
}

TEST(RowBuilder, ShowsInventoryWithTheHealthOfItsDevice) {
    const std::vector<std::pair<std::int64_t, std::string>> severities{
        {1, "unknown"}, {2, "ok"}, {3, "warning"}, {4, "critical"}, {5, "fatal"}, {99, "unknown"}};
    for (const auto& [severity, health] : severities) {
        Properties inventory = Inventory("NIC.Slot.3", "NIC in Slot 3");
        inventory["DeviceStatus"] = Number(severity);
        EXPECT_THAT(Lines(cardPath, {{inventoryInterface, inventory}}),
                    ElementsAre("NIC in Slot 3|Firmware|22.31.10||present|" + health));
    }
    const Interfaces withFru{
        {inventoryInterface, Inventory("NIC.Slot.3", "NIC in Slot 3")},
        {fruInterface, {{"Model", Text("XG-2")}, {"PN", Text("")}, {"SN", Text("S123")}}}};
    EXPECT_THAT(Lines(cardPath, withFru),
                ElementsAre("NIC in Slot 3|Firmware|22.31.10||present|ok",
                            "NIC in Slot 3|Model|XG-2||present|ok",
                            "NIC in Slot 3|Serial number|S123||present|ok"));
}

TEST(RowBuilder, ShowsEachMemberOfAStateSensor) {
    const std::string path = cardPath + "/networkcontroller_1/sensor/state/sensorid_9";
    const StateDetails details{{"Health", {"Health State", "Critical"}},
                               {"Link", {"Link State", "Connected"}},
                               {"Odd", {"", ""}},
                               {"Unread", {"Unavailable", "Unavailable"}}};
    EXPECT_THAT(Lines(path, {{stateInterface, StateSensor(details)}}),
                ElementsAre("NIC in Slot 3 Port 1|State 9 Health|Critical|Health State|ok|Critical",
                            "NIC in Slot 3 Port 1|State 9 Link|Connected|Link State|ok|",
                            "NIC in Slot 3 Port 1|State 9 Odd|n/a||unavailable|",
                            "NIC in Slot 3 Port 1|State 9 Unread|n/a||unavailable|"));
    EXPECT_THAT(Lines(path, {{stateInterface, StateSensor({})}}),
                ElementsAre("NIC in Slot 3 Port 1|State 9|n/a||unavailable|"));
}

TEST(RowBuilder, NamesTheCardOfAnObjectThatDoesNotTell) {
    ObjectModel model;
    model.AddInterfaces(cardPath, {{inventoryInterface, Inventory("NIC.Slot.3", "NIC in Slot 3")}});
    model.AddInterfaces(cardPath + "/networkcontroller_1",
                        {{controllerInterface, {{"CPUAffinity", Number(1)}}}});
    model.AddInterfaces(sensorPath, ThermalSensor());
    EXPECT_THAT(Lines(model),
                ElementsAre("NIC in Slot 3|Firmware|22.31.10||present|ok",
                            "NIC in Slot 3|networkcontroller_1 CPU affinity|1||present|",
                            "NIC in Slot 3|sensorid_5|41|C|ok|ok"));
}

TEST(RowBuilder, KeepsCardsOfOneNameApart) {
    ObjectModel model;
    const std::string base = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/";
    model.AddInterfaces(base + "Slot/1",
                        {{inventoryInterface, Inventory("NIC.Slot.1", "NIC in Slot 1")}});
    model.AddInterfaces(base + "Embedded/1",
                        {{inventoryInterface, Inventory("NIC.Embedded.1", "NIC in Slot 1")}});
    // What tells of a port stands under the card that its path or its association names.
    Properties state = StateSensor({{"Link", {"Link State", "Connected"}}});
    state["LDID"] = Text("NIC.Embedded.3-1");
    state["FriendlyLDID"] = Text("Embedded NIC 1 Port 3");
    model.AddInterfaces(base + "Embedded/1/sensor/state/sensorid_9", {{stateInterface, state}});
    Properties probe = PowerProbe();
    probe["TargetDevKey"] = Text("NIC.Slot.1-2");
    probe["FriendlyLDID"] = Text("NIC in Slot 1 Port 2");
    model.AddInterfaces(
        "/xyz/openbmc_project/sensors/power/NIC_Slot_1_sensorid_6",
        {{probeInterface, probe},
         {associationInterface,
          {{"Associations", Associations{{"inventory", "x", base + "Slot/1/x"}}}}}});
    EXPECT_THAT(Lines(model),
                ElementsAre("NIC in Slot 1 (NIC.Embedded.1)|Firmware|22.31.10||present|ok",
                            "NIC in Slot 1 (NIC.Embedded.1) Port 3|State 9 Link|Connected|Link "
                            "State|ok|",
                            "NIC in Slot 1 (NIC.Slot.1)|Firmware|22.31.10||present|ok",
                            "NIC in Slot 1 (NIC.Slot.1) Port 2|Power Sensor 6|12|W|ok|ok"));
}

TEST(RowBuilder, SortsByCardAndThenByIdAsTheyCount) {
    ObjectModel model;
    for (const std::string slot : {"10", "3"}) {
        for (const std::string id : {"12", "2"}) {
            Properties probe = PowerProbe();
            probe["FriendlyLDID"] = Text("NIC in Slot " + slot);
            probe["TargetDevKey"] = Text("NIC.Slot." + slot);
            probe["ProbeLocation"] = Text("P" + id);
            model.AddInterfaces("/xyz/openbmc_project/sensors/power/NIC_Slot_" + slot +
                                    "_sensorid_" + id,
                                {{probeInterface, probe}});
        }
    }
    EXPECT_THAT(Lines(model),
                ElementsAre("NIC in Slot 3|P2|12|W|ok|ok", "NIC in Slot 3|P12|12|W|ok|ok",
                            "NIC in Slot 10|P2|12|W|ok|ok", "NIC in Slot 10|P12|12|W|ok|ok"));
}

TEST(RowBuilder, ShowsNothingOfForeignObjects) {
    EXPECT_THAT(Lines("/foreign", {{"org.example.Thing", {{"Value", 1.0}}}}), IsEmpty());
}

} // namespace
