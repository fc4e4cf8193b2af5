/** Readings, states and records of cards that change while they are monitored. */
#include "system/cards_expected.hpp"

#include <ctime>
#include <regex>

namespace vantric::test {
namespace {

constexpr auto thermal = "temperature/NIC_Slot_3_sensorid_5";
constexpr auto power = "power/NIC_Slot_3_sensorid_6";
constexpr auto compact = "temperature/FC_Slot_8_sensorid_1";
constexpr auto hot = "temperature/FC_Slot_8_sensorid_12";

class MovingCards : public SharedServer<MovingCards> {
public:
    static constexpr auto scenario = "cards.yaml";

protected:
    /** Waits until an object is there, or isn't. */
    static void ExpectObject(const std::string& path, bool there) {
        EXPECT_TRUE(server->WaitForObjects([&](const PublishedObjects& objects) {
            return !objects.empty() && objects.contains(WholePath(path)) == there;
        })) << path;
    }

    /** The paths below a root that InterfacesRemoved has named since the last call. */
    static std::vector<std::string> TakeRemoved(const std::string& root) {
        server->Client().Settle(PlayedServer::serviceName);
        std::vector<std::string> removed;
        for (const auto& signal : server->Client().TakeSignals()) {
            const auto path = signal.body.substr(1, signal.body.find('"', 1) - 1);
            if (signal.member == "InterfacesRemoved" && path.starts_with(WholePath(root))) {
                removed.push_back(path.substr(WholePath(root).size()));
            }
        }
        return removed;
    }
};

TEST_F(MovingCards, ShowEachReading) {
    const struct {
        std::string reading, value, probe, status, objectStatus, available;
    } rows[] = {
        {"55", "55", "55", "2", "2", "true"}, {"0", "0", "2147483647", "0", "6", "false"},
        {"1", "1", "1", "2", "2", "true"},    {"-7", "-7", "-7", "0", "6", "false"},
        {"41", "41", "41", "2", "2", "true"},
    };
    for (const auto& row : rows) {
        Simctl({"set", "31", "5", row.reading});
        Simctl({"set", "31", "6", row.reading});
        ExpectShown({{thermal,
                      {{"Value.Value", row.value},
                       {"ProbeObj.ProbeReading", row.probe},
                       {"ProbeObj.ProbeStatus", row.status},
                       {"ProbeObj.ObjectStatus", row.objectStatus},
                       {"Availability.Available", row.available},
                       {"OperationalStatus.Functional", row.available},
                       {"ThermalSensor.FailedTimestamp", "0"}}},
                     {power,
                      {{"ProbeObj.ProbeReading", row.probe},
                       {"ProbeObj.ProbeStatus", row.status},
                       {"ProbeObj.ObjectStatus", row.objectStatus}}}});
    }
}

TEST_F(MovingCards, ShowAFailureWithItsTime) {
    const auto before = std::time(nullptr);
    Simctl({"operational", "31", "5", "failed"});
    ExpectShown({{thermal,
                  {{"Value.Value", "2147483647"},
                   {"ProbeObj.ProbeReading", "2147483647"},
                   {"ProbeObj.ProbeStatus", "0"},
                   {"ProbeObj.ObjectStatus", "6"},
                   {"Availability.Available", "true"},
                   {"OperationalStatus.Functional", "true"}}}});
    const auto failed = std::stol(Show(thermal, "ThermalSensor.FailedTimestamp"));
    EXPECT_GE(failed, before);
    EXPECT_LE(failed, std::time(nullptr));
    Simctl({"operational", "31", "5", "disabled"});
    ExpectShown({{thermal,
                  {{"Value.Value", "0"},
                   {"Availability.Available", "false"},
                   {"ThermalSensor.FailedTimestamp", "0"}}}});
    Simctl({"operational", "31", "5", "enabled"});
    ExpectShown({{thermal, {{"Value.Value", "41"}, {"Availability.Available", "true"}}}});
}

TEST_F(MovingCards, LetAlarmsFallAndNeverRise) {
    const auto alarms = [](const std::string& value, const std::string& warning) {
        ExpectShown({{hot,
                      {{"Value.Value", value},
                       {"Warning.WarningAlarmHigh", warning},
                       {"Critical.CriticalAlarmHigh", "false"}}}});
    };
    // Both are raised before the first reading, which is above one threshold and below the other.
    alarms("75", "true");
    Simctl({"operational", "81", "12", "failed"});
    alarms("2147483647", "true");
    Simctl({"operational", "81", "12", "enabled"});
    alarms("75", "true");
    Simctl({"set", "81", "12", "60"});
    alarms("60", "false");
    Simctl({"set", "81", "12", "95"});
    alarms("95", "false");
    // A compact sensor counts from 0 at first, and low alarms stay as they were then.
    ExpectShown({{compact,
                  {{"Value.Value", "61"},
                   {"Warning.WarningAlarmHigh", "false"},
                   {"Warning.WarningAlarmLow", "true"},
                   {"Critical.CriticalAlarmLow", "false"}}}});
    Simctl({"set", "81", "12", "75"});
}

TEST_F(MovingCards, TellTheirHealthToTheirOwnInventory) {
    const struct {
        std::string state, text, severity;
    } rows[] = {
        {"1", "Normal", "2"},
        {"2", "Non-Critical", "3"},
        {"3", "Critical", "4"},
        {"4", "Fatal", "5"},
        {"5", "Upper Non-Critical", "4"},
        {"6", "Lower Non-Critical", "3"},
        {"7", "Upper Critical", "4"},
        {"8", "Lower Critical", "4"},
        {"9", "Upper Fatal", "5"},
        {"10", "Lower Fatal", "4"},
        {"11", "", "1"},
    };
    for (const auto& row : rows) {
        Simctl({"set-state", "52", "20", "1", row.state});
        ExpectShown({{"Nic/Slot/5/networkcontroller_2/sensor/state/sensorid_ctrl2_20",
                      {{"StateSensor.StateSensorDetails",
                        R"({"StateSensor.20.1": ("Health State", ")" + row.text + "\")}"}}},
                     {"Nic/Slot/5", {{"Inventory.DeviceStatus", row.severity}}},
                     {"Nic/Slot/5/networkcontroller_2",
                      {{"ControllerInventory.DeviceStatus", "no property"}}},
                     {"Nic/Slot/3", {{"Inventory.DeviceStatus", "2"}}}});
    }
    // Without a tree, and in one of several members.
    Simctl({"set-state", "61", "9", "1", "4"});
    Simctl({"set-state", "31", "20", "1", "2"});
    ExpectShown({{"Nic/Slot/6", {{"Inventory.DeviceStatus", "5"}}},
                 {"Nic/Slot/3", {{"Inventory.DeviceStatus", "3"}}},
                 {"Nic/Slot/5", {{"Inventory.DeviceStatus", "1"}}}});
    Simctl({"set-state", "31", "20", "1", "1"});
    ExpectShown({{"Nic/Slot/3", {{"Inventory.DeviceStatus", "2"}}}});
}

TEST_F(MovingCards, BecomeOcpCardsWhenTheirModelSaysSo) {
    ExpectObject(thermal, true);
    Simctl({"fru", "3", "MX-200 OCP3"});
    const std::string type = "com.korv.bmc.Thermal.ThermalSensor.dev_types.";
    ExpectShown(
        {{thermal,
          {{"ThermalSensor.SensorType", type + "NDC_ASIC"}, {"ThermalSensor.DeviceType", "OCP3"}}},
         {"temperature/NIC_Slot_3_sensorid_7",
          {{"ThermalSensor.SensorType", type + "NDC_OPTICS"},
           {"ThermalSensor.DeviceType", "OCP3"}}}});
}

/** What the thread of a slot did, in order: F for a look at the firmware, P for records read, S for
 *  a reading of sensor 5. */
std::string DoneInSlot(const std::string& log, const std::string& slot) {
    static const std::regex line("PLDM_Slot_(\\d+):[^\n]*(FWVersion|PDR Changed|Sensor ID = 5\n)");
    std::string done;
    for (std::sregex_iterator at(log.begin(), log.end(), line), end; at != end; ++at) {
        if ((*at)[1] == slot) {
            done += at->str(2)[0];
        }
    }
    return done;
}

TEST_F(MovingCards, NoticeAChangeInTheTenthCycle) {
    ExpectObject("temperature/NIC_Slot_9_sensorid_5", true);
    Simctl({"touch", "91"});
    std::string done;
    Eventually([&] {
        done = DoneInSlot(server->Log(), "9");
        return done.find("SFPS") != std::string::npos;
    });
    EXPECT_TRUE(std::regex_match(done, std::regex("FP(S{10}F)*S{10}FP(S{10}F)*S{0,10}"))) << done;
}

TEST_F(MovingCards, AreModelledAgainWithTheirNumbers) {
    constexpr auto link = "FC/Slot/8/networkcontroller_1/fibre_channel_2/sensor/state/sensorid_21";
    ExpectShown({{hot, {{"Value.Value", "75"}, {"Critical.CriticalHigh", "90"}}},
                 {link, {{"StateSensor.SensorID", "21"}}}});
    const auto first = Show(compact, "ThermalSensor.Instance");
    const auto second = Show(hot, "ThermalSensor.Instance");
    const auto expectNumbers = [&] {
        ExpectShown({{compact, {{"ThermalSensor.Instance", first}, {"Value.Value", "61"}}},
                     {hot, {{"ThermalSensor.Instance", second}, {"Value.Value", "75"}}}});
    };
    TakeRemoved("FC/Slot/8");

    // Nobody misses a state sensor but the next look at the records; the inventory stays.
    Simctl({"drop", "81", "21"});
    ExpectObject(link, false);
    expectNumbers();
    for (const auto& removed : TakeRemoved("FC/Slot/8")) {
        EXPECT_NE(removed.find("/sensor/state/"), std::string::npos) << removed;
    }

    // A sensor that answers no more makes a new inventory.
    Simctl({"drop", "81", "12"});
    ExpectObject(hot, false);
    ExpectShown({{compact, {{"ThermalSensor.Instance", first}, {"Value.Value", "61"}}}});
    const auto removed = TakeRemoved("FC/Slot/8");
    EXPECT_NE(std::ranges::find(removed, ""), removed.end());

    Simctl({"restore", "81", "12"});
    Simctl({"restore", "81", "21"});
    expectNumbers();
    ExpectObject(link, true);

    Simctl({"threshold", "81", "12", "critical-high", "85"});
    ExpectShown({{hot, {{"Critical.CriticalHigh", "85"}}}});
    expectNumbers();
}

} // namespace
} // namespace vantric::test
