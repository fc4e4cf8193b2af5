// SPDX-License-Identifier: Apache-2.0
/** From the objects on the bus to lines of text and to JSON. */
#include "monitor/cards.hpp"

#include "monitor/json.hpp"
#include "monitor/view.hpp"

#include "objects.hpp"

#include <gmock/gmock.h>

#include <regex>

namespace {

using namespace monitor;
using namespace monitor::test;
using testing::ElementsAre;

/** The lines below the table's head, with "|" where a column ends. */
std::vector<std::string> Lines(const ObjectModel& model) {
    std::vector<std::string> lines;
    for (const std::string& line : Render(BuildCards(model), {}, {}).lines) {
        lines.push_back(std::regex_replace(line, std::regex("  +"), "|"));
    }
    lines.erase(lines.begin(), lines.begin() + 2);
    return lines;
}

/** The first line below the card's for an object. */
std::string Line(const std::string& path, const Interfaces& object) {
    ObjectModel model;
    model.AddInterfaces(cardPath, Inventory("NIC.Slot.3", "NIC in Slot 3"));
    model.AddInterfaces(path, object);
    return Lines(model).at(1);
}

struct Bend {
    std::string interface;
    std::string property;
    Value value;
    std::string line;
};

TEST(Cards, ShowReadingsWithLimitsAndAlarms) {
    const std::vector<Bend> bends{
        {valueInterface, "Value", 41.0, "|sensorid_5|41 C|70|-5..80|ethernet_1"},
        {valueInterface, "Value", 0.0, "|sensorid_5|0 C|70|-5..80|ethernet_1"},
        {valueInterface, "Value", 70.0,
         "warning|sensorid_5|70 C|70|-5..80|above limit, ethernet_1"},
        {valueInterface, "Value", 80.0,
         "critical|sensorid_5|80 C|70|-5..80|above limit, ethernet_1"},
        {valueInterface, "Value", -5.0,
         "critical|sensorid_5|-5 C|70|-5..80|below limit, ethernet_1"},
        {valueInterface, "Value", 2147483647.0, "warning|sensorid_5|failed|70|-5..80|ethernet_1"},
        {thermalInterface, "FailedTimestamp", Number(9),
         "warning|sensorid_5|failed|70|-5..80|ethernet_1"},
        {valueInterface, "Value", Text("odd"),
         "|sensorid_5|no reading|70|-5..80|not read yet, failed or 0, ethernet_1"},
        {availabilityInterface, "Available", false,
         "|sensorid_5|41.5 C|70|-5..80|unavailable, ethernet_1"},
        {warningInterface, "WarningAlarmHigh", true,
         "warning|sensorid_5|41.5 C|70|-5..80|alarm high, ethernet_1"},
        {criticalInterface, "CriticalAlarmLow", true,
         "critical|sensorid_5|41.5 C|70|-5..80|alarm low, ethernet_1"},
    };
    for (const Bend& bend : bends) {
        Interfaces sensor = Temperature();
        sensor[bend.interface][bend.property] = bend.value;
        EXPECT_EQ(Line(sensorPath, sensor), bend.line) << bend.property;
    }
    Interfaces unread = Temperature();
    unread[valueInterface]["Value"] = 0.0;
    unread[availabilityInterface]["Available"] = false;
    unread[criticalInterface]["CriticalAlarmHigh"] = true;
    EXPECT_EQ(Line(sensorPath, unread),
              "|sensorid_5|not read|70|-5..80|not read yet, or 0, ethernet_1");
}

TEST(Cards, ShowProbes) {
    const std::string path = "/xyz/openbmc_project/sensors/power/NIC_Slot_3_sensorid_6";
    const std::vector<Bend> bends{
        {probeInterface, "ProbeReading", Number(-7), "|Board power|-7 W|15|20"},
        {probeInterface, "ProbeReading", Number(15), "warning|Board power|15 W|15|20|above limit"},
        {probeInterface, "ProbeReading", Number(2147483647),
         "|Board power|no reading|15|20|not read yet, failed or 0"},
        {probeInterface, "ProbeStatus", Number(0), "|Board power|12 W|15|20|unavailable"},
        {probeInterface, "ProbeLocation", Text("a\x1b[2J"), "|a?[2J|12 W|15|20"},
    };
    for (const Bend& bend : bends) {
        Interfaces sensor = Probe();
        sensor.merge(About("", cardPath));
        sensor[bend.interface][bend.property] = bend.value;
        EXPECT_EQ(Line(path, sensor), bend.line) << bend.property;
    }
}

TEST(Cards, ShowEachMemberOfAStateSensor) {
    const std::vector<std::tuple<std::string, std::string, std::string>> rows{
        {"Health State", "Normal", "|M|Normal|Health State"},
        {"Health State", "Upper Non-Critical", "warning|M|Upper Non-Critical|Health State"},
        {"Health State", "Critical", "critical|M|Critical|Health State"},
        {"Health State", "Fatal", "fatal|M|Fatal|Health State"},
        {"Thermal Trip", "Thermal Trip", "critical|M|Thermal Trip|Thermal Trip"},
        {"Bus Error Status", "Bus Error", "warning|M|Bus Error|Bus Error Status"},
        {"Link State", "Disconnected", "|M|Disconnected|Link State"},
        {"Unavailable", "Unavailable", "|M|not read"},
        {"", "", "|M|unknown"},
    };
    for (const auto& [set, state, line] : rows) {
        EXPECT_EQ(Line(cardPath + "/sensor/state/sensorid_9", States({{"M", {set, state}}})), line);
    }
    EXPECT_EQ(Line(cardPath + "/sensor/state/sensorid_9", States({})), "|sensorid_9|unknown");
}

TEST(Cards, HaveWhatTheirPathsAndAssociationsTell) {
    ObjectModel model;
    Interfaces card = Inventory("NIC.Slot.10", "NIC in Slot 10");
    card[fruInterface] = {{"Model", Text("XG-2")}, {"SN", Text("S123")}};
    card[inventoryInterface]["DeviceStatus"] = Number(4);
    model.AddInterfaces(nics + "Slot/10", card);
    model.AddInterfaces(nics + "Slot/1", Inventory("NIC.Slot.1", "NIC in Slot 1"));
    model.AddInterfaces(nics + "Embedded/1", Inventory("NIC.Embedded.1", "NIC in Slot 1"));
    for (const std::string part :
         {"networkcontroller_2/ethernet_1/", "sfp_3/", "unknown_type_4/"}) {
        model.AddInterfaces(nics + "Slot/1/" + part + "sensor/state/sensorid_9",
                            States({{"Link", {"Link State", "Connected"}}}));
    }
    for (const std::string slot : {"Slot/1", "Slot/7"}) {
        Interfaces probe = Probe();
        probe.merge(About("ethernet_2", nics + slot + "/networkcontroller_2/ethernet_2"));
        model.AddInterfaces("/xyz/openbmc_project/sensors/power/" + slot + "_sensorid_6", probe);
    }
    model.AddInterfaces("/xyz/openbmc_project/sensors/power/X_sensorid_10", Probe());
    model.AddInterfaces("/foreign", {{"org.example.Thing", {{"Value", 1.0}}}});
    EXPECT_THAT(
        Lines(model),
        ElementsAre("ok|NIC in Slot 1 (NIC.Embedded.1)|firmware 22.31.10, health ok",
                    "ok|NIC in Slot 1 (NIC.Slot.1)|firmware 22.31.10, health ok",
                    "|Board power|12 W|15|20|ethernet_2", "|Link|Connected|Link State, ethernet_1",
                    "|Link|Connected|Link State, sfp_3",
                    "|Link|Connected|Link State, unknown_type_4",
                    "critical|NIC in Slot 10|XG-2, serial S123, firmware 22.31.10, health critical",
                    "unknown|X|health unknown", "|Board power|12 W|15|20",
                    "unknown|networkdevice/Nic/Slot/7|health unknown",
                    "|Board power|12 W|15|20|ethernet_2"));
    const std::vector<std::pair<std::string, std::size_t>> names{
        {"", 5}, {"slot 1", 2}, {"nic.slot.1", 1}, {"Slot", 4}, {"slot 100", 0}};
    for (const auto& [name, count] : names) {
        std::vector<Card> cards = BuildCards(model);
        KeepCalled(cards, name);
        EXPECT_EQ(cards.size(), count) << name;
    }
}

TEST(Cards, AreToldInJson) {
    ObjectModel model;
    model.AddInterfaces(cardPath, Inventory("NIC.Slot.3", "NIC \"3\""));
    model.AddInterfaces(sensorPath, Temperature());
    model.AddInterfaces(cardPath + "/sfp_1/sensor/state/sensorid_9",
                        States({{"M\x7f\xc2\x9b", {"Unavailable", "Unavailable"}}}));
    const std::string text = ToJson(BuildCards(model));
    EXPECT_EQ(
        std::regex_replace(text, std::regex("\\n *"), ""),
        R"({"cards": [{"path": ")" + cardPath +
            R"(","name": "NIC \"3\"","ldid": "NIC.Slot.3","model": "","partNumber": "",)"
            R"("serialNumber": "","firmware": "22.31.10","health": "ok","severity": "ok",)"
            R"("sensors": [{"path": ")" +
            sensorPath +
            R"(","name": "sensorid_5","part": "ethernet_1","value": 41.5,"unit": "C",)"
            R"("reading": "ok","warning": {"low": null,"high": 70.0,"alarmLow": false,)"
            R"("alarmHigh": false},"critical": {"low": -5.0,"high": 80.0,"alarmLow": false,)"
            R"("alarmHigh": false},"severity": "ok"}],"states": [{"path": ")" +
            cardPath +
            R"(/sfp_1/sensor/state/sensorid_9","name": "M\u007f\u009b","part": "sfp_1","set": "",)"
            R"("state": null,"severity": "ok"}]}]})");
}

} // namespace
