/** Network cards: what becomes of their controllers, and what a monitor cycle asks of which. */
#include "nic_device_fixture.hpp"
#include "support/eventually.hpp"
#include "support/threads.hpp"

#include <atomic>
#include <future>

#include <unistd.h>

namespace vantric::test {
namespace {

TEST_F(NicDeviceTest, ModelsEachControllerWithItsTreeOrWithout) {
    for (const std::uint8_t unit : {2, 3, 4, 7}) {
        cards[0].Add({.id = unit, .entityType = 144, .baseUnit = unit});
    }
    cards[0].pdrs.push_back(StatePdr(20, 144));
    cards[1].pdrs.push_back(AssociationPdr(1, 68, {144}));
    cards[1].Add({.id = 9, .entityType = 144});
    cards[2].pdrs.push_back(AssociationPdr(1, 204, {144})); // its type has no word
    cards[2].Add({.id = 10, .entityType = 144});
    Plug(controllers);
    EXPECT_EQ(log.Count(4, "Constructed NicDevice at slot 3\n"), 1);
    const auto posted = Inventory();
    EXPECT_EQ(device->State(), DEVICE_MONITORING);
    EXPECT_EQ(log.Count(4, "Inventory successful for slot 3\n"), 1);
    EXPECT_EQ(log.Count(4, "***************NUMERIC_SENSORS*******************\n"), 3);
    EXPECT_EQ(
        posted.order,
        (Texts{"Clear", "InsertPlainInventory", "InsertPlainInventory", "InsertPlainInventory",
               "InsertSensor", "InsertSensor", "InsertSensor", "InsertSensor", "InsertStateSensor",
               "UpdateControllerInventory", "InsertSensor", "UpdateControllerInventory", "Clear",
               "UpdateControllerInventory"}))
        << "the third controller's tree takes the sensors away";
    EXPECT_EQ(posted.clears.at(0).mode, CLEAR_ALL);
    EXPECT_EQ(posted.clears.at(1).mode, CLEAR_SENSORS);
    std::string shown;
    for (const auto& request : posted.sensors) {
        shown += request.objectPath.substr(request.objectPath.rfind("ctrl")) + " of kind " +
                 std::to_string(request.sensor.sensorKind) + ", ";
    }
    EXPECT_EQ(shown, "ctrl1_2 of kind 1, ctrl1_3 of kind 0, ctrl1_4 of kind 0, "
                     "ctrl1_7 of kind 3, ctrl2_9 of kind 1, ");
    for (std::size_t i = 0; i < controllers; ++i) {
        const auto& request = posted.controllers.at(i);
        EXPECT_EQ(request.objectPath, base + "3/networkcontroller_" + std::to_string(i + 1));
        EXPECT_EQ(request.deviceLdid, "NIC.Slot.3");
        EXPECT_EQ((Ids{request.slot, request.cpuAffinity}), (Ids{3, 7}));
    }
}

TEST_F(NicDeviceTest, APollsFailureEndsTheCycleBehindWhatItHasRead) {
    struct Row {
        std::uint8_t code; ///< completion code of sensor 5's reading
        int transport;     ///< and the transport's status
        int status;        ///< what the cycle returns
        Ids posted;        ///< of the second controller's sensors
        Ids read{6, 5, 4}; ///< likewise
    };
    const std::vector<Row> rows{
        {128, 0, 10, {6}, {6, 5}}, {129, 0, 12, {4, 6}},   {200, 0, 1, {4, 6}},
        {0, 3, 3, {4, 5, 6}},      {0, 8, 8, {6}, {6, 5}}, {0, 9, 9, {5, 6}, {6, 5}},
    };
    cards[0].Add({.id = 7, .baseUnit = 7});
    for (const std::uint16_t id : {6, 5, 4}) {
        cards[1].Add({.id = id});
    }
    cards[2].Add({.id = 8});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        cards[0].values.clear();
        cards[1].values.clear();
        cards[1].sensorStatus.clear();
        cards[1].sensorCode.clear();
        Plug(controllers);
        Inventory();
        EXPECT_EQ(device->MonitorTheDevice(), 0);
        EXPECT_EQ(TakePauses(), Pauses{5s});
        EXPECT_EQ(cards[2].TakeRead(), Ids{8});
        EXPECT_EQ(TakePosted().values.back().pathText, "_sensorid_ctrl1_8");
        cards[0].values = {{7, 31}};
        cards[1].TakeRead();
        cards[1].values = {{6, 30}, {4, 30}};
        cards[1].sensorStatus = {{5, row.transport}};
        cards[1].sensorCode = {{5, row.code}};
        EXPECT_EQ(device->MonitorTheDevice(), row.status);
        EXPECT_EQ(cards[1].TakeRead(), row.read);
        EXPECT_EQ(cards[2].TakeRead(), Ids{});
        EXPECT_EQ(TakePauses(), Pauses{});
        EXPECT_EQ(log.Messages(1).back(), "Monitor failed for slot 3 and error status = " +
                                              std::to_string(row.status) + '\n');
        Texts posted;
        for (const auto& request : TakePosted().values) {
            posted.push_back(std::to_string(request.controller) + ' ' + request.pathText + ' ' +
                             std::to_string(request.sensorKind) + ' ' +
                             std::to_string(static_cast<std::int64_t>(request.value)));
        }
        Texts expected{"1 _sensorid_ctrl1_7 3 31"};
        for (const auto id : row.posted) {
            expected.push_back("2 sensorid_ctrl2_" + std::to_string(id) +
                               (id == 5 ? " 1 2147483647" : " 1 30"));
        }
        EXPECT_EQ(posted, expected);
    }
}

TEST_F(NicDeviceTest, FiveFailuresOverI2cCountForNothingUntilTheNextInventory) {
    cards[0].pdrs.push_back(NumericSensorPdr{.init = 2}.Build());
    const auto cycle = [this](bool good) {
        cards[0].sensorStatus = {{5, good ? 0 : 3}};
        return device->MonitorTheDevice();
    };
    Plug(1);
    Inventory();
    EXPECT_EQ(cycle(false), 3) << "over VDM";
    Plug(1, false);
    for (int inventories = 0; inventories < 2; ++inventories) {
        Inventory();
        for (int failures = 0; failures < 5; ++failures) {
            EXPECT_EQ(cycle(false), 0);
            EXPECT_EQ(TakePauses(), Pauses{}) << "the next cycle starts at once";
            EXPECT_EQ(cycle(true), 0);
            EXPECT_EQ(TakePauses(), Pauses{5s});
        }
        for (int failures = 0; failures < 260; ++failures) {
            ASSERT_EQ(cycle(false), 3) << failures;
        }
    }
    EXPECT_EQ(log.Count(1, "Monitor failed for slot 3 and error status = 3\n"), 1 + 2 * 265);
    cards[0].commandStatus = {{enableSensor, 3}};
    Inventory();
    EXPECT_EQ(cycle(false), 3) << "only a successful inventory starts anew";
}

TEST_F(NicDeviceTest, SeveralControllersCountTogetherAndReadTheirStatesInEveryCycle) {
    const std::vector<std::string> checks{"11:1 ", "6:1 11:1 16:1 ", "4:2 7:3 11:1 14:2 "};
    for (std::size_t count = 1; count <= controllers; ++count) {
        SCOPED_TRACE(count);
        cards[count - 1].pdrs.push_back(StatePdr(20, 144));
        std::string states;
        for (std::size_t visit = 0; visit < 16 * count; ++visit) {
            states +=
                std::to_string(visit / count + 1) + ':' + std::to_string(visit % count + 1) + ' ';
        }
        const std::map<std::uint16_t, std::string> expected{
            {PLAYED_GET_STATE_READINGS, count == 1 ? "1:1 7:1 13:1 " : states},
            {PLAYED_GET_REPOSITORY_INFO, checks[count - 1]},
            {PLAYED_GET_FIRMWARE, checks[count - 1]}};
        for (const auto& [command, cycles] : expected) {
            Plug(count);
            Inventory();
            EXPECT_EQ(CyclesWith(command, 16), cycles) << command;
        }
    }
}

TEST_F(NicDeviceTest, TheTenthCycleBringsAChangedRepositoryAndFirmware) {
    const auto replace = [this](const std::vector<PlayedSensor>& sensors) {
        cards[0].Replace(sensors);
        cards[0].pdrs.push_back(AssociationPdr(1, 68, {144}));
    };
    replace({{.id = 5}});
    Plug(1);
    Inventory();
    CyclesWith(0, 10);
    TakePosted();
    replace({{.id = 5}, {.id = 6, .baseUnit = 7}});
    cards[0].firmware = "2.0";
    cards[0].sensorStatus = {{6, 3}};
    EXPECT_EQ(device->MonitorTheDevice(), 3) << "the new sensor is polled at once";
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, (Texts{"UpdateFWVersion", "Clear", "InsertSensor", "InsertSensor",
                                   "UpdateControllerInventory", "SetSensorValue"}))
        << "a sensor that never had a reading has none to lose";
    EXPECT_EQ(posted.firmware.at(0).version, "2.0");
    EXPECT_EQ(posted.firmware.at(0).deviceLdid, "NIC.Slot.3");
    EXPECT_EQ(posted.clears.at(0).mode, CLEAR_SENSORS);
    EXPECT_EQ(posted.sensors.at(1).sensor.sensorKind, SENSOR_KIND_PROBE);
    EXPECT_EQ(device->State(), DEVICE_MONITORING);

    cards[0].firmware = "";
    cards[0].sensorStatus.clear();
    CyclesWith(0, 9);
    TakePosted();
    EXPECT_EQ(CyclesWith(PLAYED_GET_FIRMWARE, 2), "2:1 ") << "a failed cycle doesn't count";
    EXPECT_EQ(TakePosted().order, Texts{}) << "no version to publish, and the same repository";

    cards[0].Replace({{.id = 5}}); // without entities from now on
    cards[0].commandStatus = {{PLAYED_GET_REPOSITORY_INFO, 3}};
    CyclesWith(0, 10);
    EXPECT_EQ(TakePosted().order, Texts{}) << "a failed look is none, and no failure";
    cards[0].commandStatus.clear();
    CyclesWith(0, 10);
    EXPECT_EQ(TakePosted().order, (Texts{"Clear", "UpdateControllerInventory", "SetSensorValue"}))
        << "a card that has had entities is modeled by them";
}

TEST_F(NicDeviceTest, AChangedRepositoryOfOneControllerHasAllModeledAnew) {
    cards[0].Add({.id = 5});
    cards[1].Add({.id = 7});
    Plug(2);
    Inventory();
    CyclesWith(0, 5);
    TakePosted();
    cards[0].Replace({{.id = 6}});
    CyclesWith(0, 1);
    EXPECT_EQ(TakePosted().order,
              (Texts{"UpdateFWVersion", "InsertSensor", "UpdateControllerInventory", "InsertSensor",
                     "UpdateControllerInventory", "SetSensorValue"}));
}

TEST_F(NicDeviceTest, ATableWaitsForTheCycleButNotForItsPause) {
    cards[0].Add({});
    cards[1].Add({});
    Plug(2);
    Inventory();
    std::future<void> table;
    std::atomic<pid_t> thread{0};
    const auto taken = [&] { return table.wait_for(0s) == std::future_status::ready; };
    const auto waits = [&](const Bytes&) {
        EXPECT_TRUE(Eventually([&] { return (thread != 0 && Sleeps(thread)) || taken(); }));
        EXPECT_FALSE(taken());
    };
    cards[0].onRequest = [&](const Bytes& request) {
        table = std::async(std::launch::async, [&] {
            thread = gettid();
            device->UpdateEIDTables({}, {});
        });
        waits(request);
    };
    cards[1].onRequest = waits;
    OnPause([&](auto) { EXPECT_TRUE(table.wait_for(30s) == std::future_status::ready); });
    EXPECT_EQ(device->MonitorTheDevice(), 0);
    OnPause({});
    EXPECT_EQ(TakePauses(), Pauses{5s});
}

TEST_F(NicDeviceTest, StatesComeBehindReadingsAndTheirFailureIsNoFailureOfTheCycle) {
    cards[0].Add({.id = 5});
    cards[0].pdrs.push_back(StatePdr(20, 144));
    cards[1].pdrs.push_back(StatePdr(20, 144));
    Plug(2);
    Inventory();
    CyclesWith(0, 1);
    auto posted = TakePosted();
    EXPECT_EQ(posted.order,
              (Texts{"SetSensorValue", "UpdateDeviceHealthStatus", "SetStateSensorValue",
                     "UpdateDeviceHealthStatus", "SetStateSensorValue"}));
    EXPECT_EQ(posted.states.at(0).searchKey, "/sensor/state/sensorid_ctrl1_20");
    EXPECT_EQ(posted.states.at(1).searchKey, "/sensor/state/sensorid_ctrl2_20");
    cards[0].commandStatus = {{PLAYED_GET_STATE_READINGS, 9}};
    CyclesWith(0, 1);
    posted = TakePosted();
    EXPECT_EQ(posted.order, Texts{"SetStateSensorValue"});
    EXPECT_EQ(posted.states.at(0).stateSetNames, Texts{""}) << "a state of nothing";
}

} // namespace
} // namespace vantric::test
