// SPDX-License-Identifier: Apache-2.0
/** Numeric sensors as clients see them. */
#include "dbus_handler/published_bus.hpp"

#include <cmath>
#include <ctime>

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

using SensorObjects = PublishedBus;

TEST_F(SensorObjects, AreAnnouncedInterfaceByInterfaceBehindTheirValues) {
    for (const auto& [kind, interfaces] : interfacesOfKind) {
        EXPECT_EQ(0, Do(dbusDataInsert, CardSensor(kind)));
        const auto signals = Sent();
        EXPECT_EQ(interfaces, Told(signals, "InterfacesAdded", CardSensorPath()));
        const auto isAdded = [](const Signal& signal) {
            return signal.member == "InterfacesAdded";
        };
        const auto added = std::ranges::find_if(signals, isAdded);
        EXPECT_NE(signals.begin(), added) << "a value that isn't the default is told first";
        EXPECT_TRUE(std::all_of(added, signals.end(), isAdded));
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
        const auto object = Object(sensorsRoot, CardSensorPath());
        EXPECT_EQ(row.high, object.at("Warning").at("WarningAlarmHigh")) << row.temperature;
        EXPECT_EQ(row.low, object.at("Warning").at("WarningAlarmLow")) << row.temperature;
        EXPECT_EQ(row.high, object.at("Critical").at("CriticalAlarmHigh")) << row.temperature;
        EXPECT_EQ(row.low, object.at("Critical").at("CriticalAlarmLow")) << row.temperature;
        objects.Clear({card, 0, CLEAR_SENSORS});
    }
}

TEST_F(SensorObjects, StayAsTheyAreWhenPostedAgain) {
    Do(dbusDataInsert, CardSensor());
    Sent();
    auto other = CardSensor();
    other.sensor.upperWarning = 1;
    other.sensor.name = "Other";
    EXPECT_EQ(0, Do(dbusDataInsert, other));
    EXPECT_EQ(std::vector<Signal>{}, Sent());
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
                                {"", "NIC.Embedded.1", 200, 1, 151},
                                {gpu, "", 1, 1, 0},
                                {"cxl/memory/1", "", 65, 1, 0},
                                {"cxl/memory/1", "", 143, 1, 0},
                                {"cxl/memory/1", "", 66, 1, 0},
                                {"cxl/memory/1", "", 65, 70, 0},
                                {"cxl/memory/1", "", 1, 1, 0}};
    // Two sensors of each type; for each in the order of creation, its instance behind the first
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
    auto malformed = CardSensor(SENSOR_KIND_PROBE);
    malformed.objectPath = "no path";
    EXPECT_EQ(0, Do(dbusDataInsert, malformed));
    const auto log = TakeLog();
    ASSERT_EQ(1U, log.size());
    EXPECT_TRUE(log[0].starts_with("1 createDbusObj: sd_bus_add_object_vtable")) << log[0];
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

struct ValueRow {
    double value;
    const char *probeStatus, *objectStatus, *probeReading;
    bool failed;
    const char* available;
};

TEST_F(SensorObjects, ShowWhatFollowsFromAReading) {
    const ValueRow rows[] = {{41.9, "2", "2", "41", false, "true"},
                             {0, "0", "6", "2147483647", false, "false"},
                             {-3.9, "0", "6", "-3", false, "false"},
                             {0.5, "2", "2", "0", false, "true"},
                             {2147483647.0, "0", "6", "2147483647", true, "true"},
                             {2147483646.0, "2", "2", "2147483646", false, "true"},
                             {1e300, "2", "2", "2147483647", false, "true"},
                             {-1e300, "0", "6", "-2147483648", false, "false"},
                             {std::nan(""), "0", "6", "2147483647", false, "false"}};
    Do(dbusDataInsert, CardSensor());
    for (const auto& row : rows) {
        Do(dbusSetSensorValue, Reading(row.value));
        const auto object = Object(sensorsRoot, CardSensorPath());
        EXPECT_EQ(row.probeStatus, object.at("ProbeObj").at("ProbeStatus")) << row.value;
        EXPECT_EQ(row.objectStatus, object.at("ProbeObj").at("ObjectStatus")) << row.value;
        EXPECT_EQ(row.probeReading, object.at("ProbeObj").at("ProbeReading")) << row.value;
        const auto failedAt = std::stoll(object.at("ThermalSensor").at("FailedTimestamp"));
        EXPECT_NEAR(row.failed ? static_cast<double>(std::time(nullptr)) : 0,
                    static_cast<double>(failedAt), 60)
            << row.value;
        EXPECT_EQ(row.available, object.at("Availability").at("Available")) << row.value;
        EXPECT_EQ(row.available, object.at("OperationalStatus").at("Functional")) << row.value;
    }
}

TEST_F(SensorObjects, SignalEachChangeOnceAndInOrder) {
    const std::vector<std::pair<double, Texts>> rows{
        {readingUnavailable,
         {"FailedTimestamp=now", "Value=2147483647", "Available=true", "Functional=true"}},
        {96,
         {"ProbeStatus=2", "ObjectStatus=2", "ProbeReading=96", "FailedTimestamp=0", "Value=96"}},
        {96, {}},
        {96.5, {"Value=96.5"}},
        {-3.5,
         {"ProbeStatus=0", "ObjectStatus=6", "ProbeReading=-3", "Value=-3.5",
          "CriticalAlarmHigh=false", "WarningAlarmHigh=false", "Available=false",
          "Functional=false"}},
        {0, {"ProbeReading=2147483647", "Value=0"}},
        {41,
         {"ProbeStatus=2", "ObjectStatus=2", "ProbeReading=41", "Value=41", "Available=true",
          "Functional=true"}},
        {0,
         {"ProbeStatus=0", "ObjectStatus=6", "ProbeReading=2147483647", "Value=0",
          "Available=false", "Functional=false"}},
        {std::nan(""), {"Value=nan"}},
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
                if (change.starts_with("FailedTimestamp=") && change != "FailedTimestamp=0") {
                    change = "FailedTimestamp=now";
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
    // Part of a number names nobody either.
    Do(dbusSetSensorValue, Reading(8, SENSOR_KIND_PROBE, 2));
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

TEST_F(SensorObjects, EndHighAlarmsWithAReadingButNeverRaiseThem) {
    auto request = CardSensor();
    request.sensor.temperature = 95;
    request.sensor.upperWarning = 90;
    request.sensor.upperCritical = 95;
    request.sensor.lowerWarning = 95;
    Do(dbusDataInsert, request);
    const auto alarms = [this] {
        const auto object = Object(sensorsRoot, CardSensorPath());
        return object.at("Warning").at("WarningAlarmHigh") + " " +
               object.at("Critical").at("CriticalAlarmHigh") + " " +
               object.at("Warning").at("WarningAlarmLow");
    };
    EXPECT_EQ("true true true", alarms());
    for (const double value : {96.0, double{readingUnavailable}}) {
        Do(dbusSetSensorValue, Reading(value));
        EXPECT_EQ("true true true", alarms()) << value;
    }
    Do(dbusSetSensorValue, Reading(95)); // at the threshold is below the alarm now
    EXPECT_EQ("true false true", alarms());
    Do(dbusSetSensorValue, Reading(20));
    EXPECT_EQ("false false true", alarms());
    Do(dbusSetSensorValue, Reading(99));
    EXPECT_EQ("false false true", alarms());
}

TEST_F(SensorObjects, KeepAnAlarmAboveANegativeThreshold) {
    auto request = CardSensor();
    request.sensor.temperature = -5;
    request.sensor.upperWarning = request.sensor.upperCritical = -10;
    Do(dbusDataInsert, request);
    for (const auto& [value, alarm] :
         std::vector<std::pair<double, const char*>>{{-9, "true"}, {-10, "false"}}) {
        Do(dbusSetSensorValue, Reading(value));
        const auto object = Object(sensorsRoot, CardSensorPath());
        EXPECT_EQ(alarm, object.at("Warning").at("WarningAlarmHigh")) << value;
        EXPECT_EQ(alarm, object.at("Critical").at("CriticalAlarmHigh")) << value;
    }
}

} // namespace

} // namespace vantric::test
