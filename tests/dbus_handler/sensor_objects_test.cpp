// SPDX-License-Identifier: Apache-2.0
/** Numeric sensors as clients see them. */
#include "dbus_handler/published_bus.hpp"

#include <cmath>
#include <ctime>
#include <set>
#include <span>

namespace vantric::test {

namespace {

using Texts = std::vector<std::string>;

const std::map<std::uint8_t, Texts> interfacesOfKind{
    {SENSOR_KIND_THERMAL_PROBE,
     {"Value", "Warning", "Critical", "Availability", "OperationalStatus", "Definitions",
      "ThermalSensor", "ProbeObj"}},
    {SENSOR_KIND_THERMAL,
     {"Value", "Warning", "Critical", "Availability", "OperationalStatus", "Definitions",
      "ThermalSensor"}},
    {SENSOR_KIND_PROBE, {"Definitions", "ProbeObj"}}};

class SensorObjects : public PublishedBus {
protected:
    /** The alarms of CardSensor: warning high and low, critical high and low. */
    std::string Alarms() {
        const auto object = Object(sensorsRoot, CardSensorPath());
        const auto& warning = object.at("Warning");
        const auto& critical = object.at("Critical");
        return warning.at("WarningAlarmHigh") + " " + warning.at("WarningAlarmLow") + " " +
               critical.at("CriticalAlarmHigh") + " " + critical.at("CriticalAlarmLow");
    }
};

TEST_F(SensorObjects, AreAnnouncedInterfaceByInterfaceAfterTheirValues) {
    for (const auto& [kind, interfaces] : interfacesOfKind) {
        EXPECT_EQ(0, Do(dbusDataInsert, CardSensor(kind)));
        const auto signals = Sent();
        EXPECT_EQ(interfaces, Told(signals, "InterfacesAdded", CardSensorPath()));
        const auto isAdded = [](const Signal& signal) {
            return signal.member == "InterfacesAdded";
        };
        const auto added = std::ranges::find_if(signals, isAdded);
        std::set<std::string> unequal; // the interfaces with a value that isn't the default
        for (const auto& signal : std::span(signals.begin(), added)) {
            unequal.insert(Short(signal.body.substr(1, signal.body.find('"', 1) - 1)));
        }
        std::set expected(interfaces.begin(), interfaces.end());
        for (const auto* atDefaults : {"Warning", "Critical", "OperationalStatus"}) {
            expected.erase(atDefaults);
        }
        EXPECT_EQ(expected, unequal);
        EXPECT_TRUE(std::all_of(added, signals.end(), isAdded));
        auto again = CardSensor(kind);
        again.sensor.upperWarning = 1;
        again.sensor.name = "Other";
        EXPECT_EQ(0, Do(dbusDataInsert, again));
        EXPECT_EQ(std::vector<Signal>{}, Sent()) << "it stays as it is";
        Do(dbusClear, ClearRequest{card, 3, CLEAR_SENSORS});
        EXPECT_EQ(interfaces, Told(Sent(), "InterfacesRemoved", CardSensorPath()));
        EXPECT_TRUE(Object(sensorsRoot, CardSensorPath()).empty());
    }
}

TEST_F(SensorObjects, StandForTheResolvedLdid) {
    auto request = CardSensor(SENSOR_KIND_THERMAL_PROBE);
    request.resolvedLdid = "NIC.Embedded.1";
    Do(dbusDataInsert, request);
    const auto object = Object(sensorsRoot, CardSensorPath());
    EXPECT_EQ("\"NIC.Embedded.1-1#sensorid_5\"", object.at("ProbeObj").at("Key"));
    EXPECT_EQ("2", object.at("ThermalSensor").at("LocatorType"));
    EXPECT_EQ("\"EmbeddedLOM\"", object.at("ThermalSensor").at("DeviceType"));
    Do(dbusSetSensorValue, Reading(5)); // still kept under the device's LDID
    EXPECT_EQ("5", Property(CardSensorPath(), "xyz.openbmc_project.Sensor.Value", "Value"));
}

struct AlarmRow {
    std::int64_t upper, lower;
    std::int32_t temperature;
    const char *high, *low;
};

TEST_F(SensorObjects, RaiseAlarmsByTheReadingAtCreation) {
    const AlarmRow rows[] = {
        {30, 0, 30, "true", "false"},     {30, 0, 29, "false", "false"},
        {0, 30, 30, "false", "true"},     {0, 30, 31, "false", "false"},
        {0, 0, 0, "false", "false"},      {0x1'0000'0000, -0x1'0000'0000, 0, "false", "false"},
        {-10, -20, -10, "true", "false"}, {-10, -20, -11, "false", "false"},
        {-10, -20, -20, "false", "true"}, {30, 10, readingUnavailable, "true", "false"}};
    for (const auto& row : rows) {
        auto request = CardSensor(SENSOR_KIND_THERMAL);
        request.sensor.upperWarning = request.sensor.upperCritical = row.upper;
        request.sensor.lowerWarning = request.sensor.lowerCritical = row.lower;
        request.sensor.temperature = row.temperature;
        Do(dbusDataInsert, request);
        const std::string each = std::string(row.high) + " " + row.low;
        EXPECT_EQ(each + " " + each, Alarms()) << row.temperature;
        objects.Clear({card, 0, CLEAR_SENSORS});
    }
}

struct NumberedRow {
    const char* inventory; ///< below the root
    const char* resolvedLdid;
    std::uint16_t entityType, firstId;
    int first; ///< instance of its type
};

TEST_F(SensorObjects, KeepTheirNumbersUntilTheReset) {
    constexpr auto gpu = "accelerator/ProcAccelerator/Slot/5";
    const NumberedRow rows[] = {{"", "", 300, 1, 151},
                                {"", "", 200, 1, 151},
                                {"", "", 1, 1, 151},
                                {"", "NIC.Embedded.1", 300, 1, 151},
                                {gpu, "", 148, 1, 0},
                                {"cxl/memory/1", "NIC.Embedded.1", 200, 1, 151},
                                {gpu, "", 1, 1, 0},
                                {"cxl/memory/1", "", 65, 1, 0},
                                {"cxl/memory/1", "", 143, 1, 0},
                                {"cxl/memory/1", "", 66, 1, 0},
                                {"cxl/memory/1", "", 65, 70, 0},
                                {"cxl/memory/1", "", 1, 1, 0}};
    // Two sensors of each type; for each in the order of creation, its instance after the first
    // and its location.
    const auto numbers = [&](bool backwards) {
        Texts shown;
        for (std::size_t count = 0; count < 2 * std::size(rows); ++count) {
            const std::size_t sensor = backwards ? 2 * std::size(rows) - 1 - count : count;
            const auto& row = rows[sensor / 2];
            auto request = CardSensor();
            request.sensor.entityType = row.entityType;
            request.sensor.sensorId = static_cast<std::uint16_t>(row.firstId + sensor % 2);
            request.sensor.name = std::to_string(sensor);
            request.resolvedLdid = row.resolvedLdid;
            request.inventoryPath = std::string(inventoryRoot) + '/' + row.inventory;
            request.objectPath =
                std::string(sensorsRoot) + "/temperature/ProcAccelerator_" + request.sensor.name;
            Do(dbusDataInsert, request);
            const auto object = Object(sensorsRoot, request.objectPath);
            const int instance = std::stoi(object.at("ThermalSensor").at("Instance"));
            shown.push_back(std::to_string(instance - row.first) + ' ' +
                            object.at("ProbeObj").at("ProbeLocation"));
        }
        objects.Clear({card, 0, CLEAR_SENSORS});
        return shown;
    };
    Texts fresh;
    for (std::size_t count = 0; count < 2 * std::size(rows); ++count) {
        fresh.push_back(std::to_string(count % 2) + " \"System Board Proc Accel" +
                        std::to_string(count + 1) + " Temp\"");
    }
    EXPECT_EQ(fresh, numbers(false));
    EXPECT_EQ(fresh, numbers(false)) << "they have come back";
    Do(dbusDataInsert, CardSensor());
    EXPECT_EQ("153", Object(sensorsRoot, CardSensorPath()).at("ThermalSensor").at("Instance"));
    publisher.ResetNumbering().LogFailure(LOG_LEVEL_ERROR);
    Sent();
    EXPECT_EQ(fresh, numbers(true));
}

TEST_F(SensorObjects, AreMadeByALaterPostWhenTheFirstFailed) {
    auto inTheWay = CardSensor(SENSOR_KIND_PROBE);
    inTheWay.deviceLdid = "NIC.Slot.7";
    Do(dbusDataInsert, inTheWay);
    Do(dbusDataInsert, CardSensor());
    EXPECT_TRUE(TakeLog().back().starts_with("1 createDbusObj: sd_bus_add_object_vtable"));
    objects.Clear({"NIC.Slot.7", 0, CLEAR_SENSORS});
    EXPECT_TRUE(Object(sensorsRoot, CardSensorPath()).empty());
    Do(dbusDataInsert, CardSensor());
    Do(dbusSetSensorValue, Reading(5));
    EXPECT_EQ("5", Property(CardSensorPath(), "xyz.openbmc_project.Sensor.Value", "Value"));
}

TEST_F(SensorObjects, ArentMadeFromWhatIsNoSensor) {
    EXPECT_EQ(0, Do(dbusDataInsert, CardSensor(SENSOR_KIND_NONE)));
    EXPECT_EQ(0, Do(dbusDataInsert, CardSensor(4)));
    auto nowhere = CardSensor();
    nowhere.objectPath.clear();
    EXPECT_EQ(-1, Do(dbusDataInsert, nowhere));
    EXPECT_EQ(Texts{"1 dbusDataInsert: Path is NULL!"}, TakeLog());
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

TEST_F(SensorObjects, SignalEachChangeOnceAndInOrder) {
    const std::vector<std::pair<double, Texts>> rows{
        {readingUnavailable,
         {"FailedTimestamp=now", "Value=2147483647", "Available=true", "Functional=true"}},
        {96,
         {"ProbeStatus=2", "ObjectStatus=2", "ProbeReading=96", "FailedTimestamp=0", "Value=96"}},
        {96, {}},
        {96.5, {"Value=96.5"}},
        {-3.9,
         {"ProbeStatus=0", "ObjectStatus=6", "ProbeReading=-3", "Value=-3.9",
          "CriticalAlarmHigh=false", "WarningAlarmHigh=false", "Available=false",
          "Functional=false"}},
        {0, {"ProbeReading=2147483647", "Value=0"}},
        {41.9,
         {"ProbeStatus=2", "ObjectStatus=2", "ProbeReading=41", "Value=41.9", "Available=true",
          "Functional=true"}},
        {0,
         {"ProbeStatus=0", "ObjectStatus=6", "ProbeReading=2147483647", "Value=0",
          "Available=false", "Functional=false"}},
        {0.5,
         {"ProbeStatus=2", "ObjectStatus=2", "ProbeReading=0", "Value=0.5", "Available=true",
          "Functional=true"}},
        {2147483646, {"ProbeReading=2147483646", "Value=2147483646"}},
        {1e300, {"ProbeReading=2147483647", "Value=1e+300"}},
        {-1e300,
         {"ProbeStatus=0", "ObjectStatus=6", "ProbeReading=-2147483648", "Value=-1e+300",
          "Available=false", "Functional=false"}},
        {std::nan(""), {"ProbeReading=2147483647", "Value=nan"}},
        {-std::nan(""), {}}};
    for (const auto& [kind, interfaces] : interfacesOfKind) {
        auto request = CardSensor(kind, kind);
        request.sensor.temperature = 95;
        request.sensor.upperWarning = request.sensor.upperCritical = 90;
        Do(dbusDataInsert, request);
        Sent();
        for (const auto& [value, all] : rows) {
            Texts expected;
            for (const auto& change : all) {
                const bool probe = change.starts_with("Probe") || change.starts_with("Object");
                if (kind == SENSOR_KIND_THERMAL_PROBE || probe == (kind == SENSOR_KIND_PROBE)) {
                    expected.push_back(change);
                }
            }
            Do(dbusSetSensorValue, Reading(value, kind, kind));
            Texts changes = Changes(CardSensorPath(kind));
            for (auto& change : changes) {
                const std::string failed = "FailedTimestamp=";
                if (change.starts_with(failed) &&
                    std::time(nullptr) - std::stoll(change.substr(failed.size())) <= 60) {
                    change = failed + "now";
                }
            }
            EXPECT_EQ(expected, changes) << int{kind} << ' ' << value;
        }
    }
}

TEST_F(SensorObjects, AreFoundByTheirKindOnly) {
    Do(dbusDataInsert, CardSensor(SENSOR_KIND_THERMAL, 1));
    Do(dbusDataInsert, CardSensor(SENSOR_KIND_PROBE, 22));
    Sent();
    Do(dbusSetSensorValue, Reading(8, SENSOR_KIND_PROBE, 1));
    Do(dbusSetSensorValue, Reading(8, SENSOR_KIND_THERMAL_PROBE, 22));
    Do(dbusSetSensorValue, Reading(8, SENSOR_KIND_NONE, 1));
    // Part of a number names no sensor either.
    Do(dbusSetSensorValue, Reading(8, SENSOR_KIND_PROBE, 2));
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

TEST_F(SensorObjects, EndHighAlarmsWithAReadingButNeverRaiseThem) {
    const struct {
        std::int32_t temperature;
        std::int64_t warning, critical, lower;
        std::vector<std::pair<double, const char*>> readings;
    } rows[] = {
        {95,
         90,
         95,
         95,
         {{96, "true true true true"},
          {readingUnavailable, "true true true true"},
          {95, "true true false true"}, // at the threshold is below the alarm now
          {20, "false true false true"},
          {99, "false true false true"}}},
        {-5, -10, -10, 0, {{-9, "true false true false"}, {-10, "false false false false"}}}};
    for (const auto& row : rows) {
        auto request = CardSensor();
        request.sensor.temperature = row.temperature;
        request.sensor.upperWarning = row.warning;
        request.sensor.upperCritical = row.critical;
        request.sensor.lowerWarning = request.sensor.lowerCritical = row.lower;
        Do(dbusDataInsert, request);
        for (const auto& [value, alarms] : row.readings) {
            Do(dbusSetSensorValue, Reading(value));
            EXPECT_EQ(alarms, Alarms()) << value;
        }
        objects.Clear({card, 0, CLEAR_SENSORS});
    }
}

} // namespace

} // namespace vantric::test
