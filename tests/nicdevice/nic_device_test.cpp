// SPDX-License-Identifier: Apache-2.0
/** Network cards: what they publish, what a monitor cycle asks of which controller, and how
 *  inventories and cycles end. */
#include "nicdevice/nic_device.hpp"

#include "support/eventually.hpp"
#include "support/played_device.hpp"
#include "support/threads.hpp"

#include <atomic>
#include <future>

#include <unistd.h>

namespace vantric::test {
namespace {

using namespace std::chrono_literals;
constexpr std::size_t controllers = 3;

class NicDeviceTest : public DeviceClassTest<NicDevice> {
protected:
    NicDeviceTest()
        : DeviceClassTest("/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/", 3,
                          "NIC.Slot.3") {
        details.vdmEIDs.resize(1);
    }
};

/** A FRU table with one general record, which tells the model. */
PlayedCard::Bytes FruOf(const std::string& model) {
    PlayedCard::Bytes table{1, 0, 1, 1, 1, 2, static_cast<std::uint8_t>(model.size())};
    table.insert(table.end(), model.begin(), model.end());
    return table;
}

/** Controller, sensor and kind of posted values, with the value. */
Texts Shown(const PostedRequests& posted) {
    Texts shown;
    for (const auto& request : posted.values) {
        shown.push_back(std::to_string(request.controller) +
                        request.pathText.substr(request.pathText.rfind('_')) + " kind " +
                        std::to_string(request.sensorKind) + " = " +
                        std::to_string(static_cast<std::int64_t>(request.value)));
    }
    return shown;
}

TEST_F(NicDeviceTest, EachEndpointsInventoryObjectTellsItsFruDataIfThereIs) {
    const auto general = FruOf("X100");
    const struct {
        const char* object; ///< model, "-" without FRU data, and firmware version
        std::optional<PlayedCard::Bytes> table;
        std::uint16_t failing = 0;
    } rows[] = {
        {"- 1.0", {}},
        {"X100 1.0", general},
        {" 1.0", PlayedCard::Bytes{1, 0, 2, 0, 1}}, // no general record
        {"- 1.0", general, PLAYED_GET_FRU_METADATA},
        {"- 1.0", general, PLAYED_GET_FRU_TABLE},
        {"X100 ", general, PLAYED_GET_FIRMWARE},
        {"- ", {}, PLAYED_GET_FIRMWARE},
    };
    card.Add({});
    cards[1].Add({});
    cards[1].fruTable = FruOf("Y200");
    cards[1].firmware = "2.0";
    Plug(2);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.object);
        card.fruTable = row.table;
        card.commandStatus = {{row.failing, 3}};
        const auto posted = Inventory();
        EXPECT_EQ(device->State(), DEVICE_MONITORING);
        Texts objects;
        const auto add = [&](const auto& request, const auto& fields, const std::string& model) {
            objects.push_back(model + ' ' + fields.firmwareVersion);
            EXPECT_EQ(request.deviceLdid, "NIC.Slot.3");
            EXPECT_EQ(request.objectPath, base + '3');
            EXPECT_EQ((Ids{request.slot, fields.identity.deviceId, fields.cpuAffinity}),
                      (Ids{3, 4, 7}));
        };
        for (const auto& request : posted.plainInventories) {
            add(request, request, "-");
        }
        for (const auto& request : posted.fruInventories) {
            add(request, request.fields, request.fields.model);
        }
        EXPECT_EQ(objects, (Texts{row.object, "Y200 2.0"}));
    }
}

TEST_F(NicDeviceTest, AnInventoryAsksInAFixedOrder) {
    const std::map<std::string, std::size_t> typeAt{{"0.3", 8}, {"0.5", 3}};
    Texts asked;
    card.onRequest = [&](std::span<const std::uint8_t> request) {
        const auto command = std::to_string(request[1]) + '.' + std::to_string(request[2]);
        const auto type = typeAt.find(command);
        asked.push_back(
            command + (type != typeAt.end() ? " of " + std::to_string(request[type->second]) : ""));
    };
    card.fruTable = FruOf("X100");
    card.Add({.init = 2});
    Plug(1);
    Inventory();
    EXPECT_EQ(asked,
              (Texts{"0.4", "5.2", "4.1", "4.2", "0.3 of 0", "0.3 of 2", "0.3 of 4", "0.3 of 5",
                     "0.5 of 0", "0.6", "0.6", "0.6", "0.2", "2.80", "2.81", "2.16"}));
}

TEST_F(NicDeviceTest, AnInventoryEndsWithTheNeededStepThatFails) {
    // GetPLDMTypes, GetPLDMCommands, GetTID, GetPDRRepositoryInfo, GetPDR; then what no inventory
    // needs: GetPLDMVersion, SelectPLDMVersion.
    const Ids needed{0x0004, 0x0005, 0x0002, 0x0250, 0x0251, PLAYED_ENABLE_SENSOR};
    const Ids others{0x0003, 0x0006};
    for (auto& card : cards) {
        card.Add({.init = 2});
    }
    Plug(controllers);
    for (const auto command : needed) {
        cards[1].commandStatus = {{command, 3}};
        EXPECT_EQ(Inventory().controllers.size(), 0U);
        EXPECT_EQ(device->State(), DEVICE_SWITCH_TO_I2C) << command;
    }
    EXPECT_EQ(cards[2].Asked(), 0U);
    useNewEndPoints = true;
    Inventory();
    EXPECT_EQ(device->State(), DEVICE_INVENTORY);
    for (const auto command : others) {
        cards[1].commandStatus = {{command, 3}};
        EXPECT_EQ(Inventory().controllers.size(), controllers);
        EXPECT_EQ(device->State(), DEVICE_MONITORING) << command;
    }
}

TEST_F(NicDeviceTest, AFailedPollEndsTheCycleAfterWhatItHasRead) {
    card.Add({.id = 7, .baseUnit = 7});
    for (const std::uint16_t id : {6, 5, 4}) {
        cards[1].Add({.id = id});
    }
    cards[2].Add({.id = 8});
    Plug(controllers);
    Inventory();
    EXPECT_EQ(Shown(Cycles(1)).back(), "3_8 kind 1 = 25");
    EXPECT_EQ(TakePauses(), Pauses{5s});
    card.values = {{7, 31}};
    cards[1].values = {{6, 30}, {4, 30}};
    cards[1].sensorStatus = {{5, 3}};
    cards[2].TakeRead();
    EXPECT_EQ(device->MonitorTheDevice(), 3);
    EXPECT_EQ(Shown(TakePosted()), (Texts{"1_7 kind 3 = 31", "2_4 kind 1 = 30",
                                          "2_5 kind 1 = 2147483647", "2_6 kind 1 = 30"}));
    cards[1].sensorStatus = {};
    cards[1].sensorCode = {{5, 128}};
    EXPECT_EQ(device->MonitorTheDevice(), 10);
    EXPECT_EQ(cards[2].TakeRead(), Ids{});
    EXPECT_EQ(TakePauses(), Pauses{});
    for (const auto* status : {"3\n", "10\n"}) {
        EXPECT_EQ(
            log.Count(1, std::string("Monitor failed for slot 3 and error status = ") + status), 1);
    }
}

TEST_F(NicDeviceTest, FiveFailuresOverI2cCountForNothingUntilTheNextInventory) {
    card.Add({.init = 2});
    const auto cycle = [this](bool good) {
        card.sensorStatus = {{5, good ? 0 : 3}};
        return device->MonitorTheDevice();
    };
    Plug(1);
    Inventory();
    EXPECT_EQ(cycle(false), 3) << "over VDM";
    details.vdmEIDs.swap(details.i2cEIDs);
    Plug(1);
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
    card.commandStatus = {{PLAYED_ENABLE_SENSOR, 3}};
    Inventory();
    EXPECT_EQ(cycle(false), 3) << "only a successful inventory starts anew";
}

TEST_F(NicDeviceTest, SeveralControllersCountTogetherAndReadTheirStatesInEveryCycle) {
    const std::vector<std::string> checks{"11:1 ", "6:1 11:1 16:1 ", "4:2 7:3 11:1 14:2 "};
    for (std::size_t count = 1; count <= controllers; ++count) {
        SCOPED_TRACE(count);
        cards[count - 1].AddState(20, 144);
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
        card.Replace(sensors);
        card.AddEntities(68, {144});
    };
    replace({{.id = 5}});
    Plug(1);
    Inventory();
    Cycles(10);
    replace({{.id = 5}, {.id = 6, .baseUnit = 7}});
    card.firmware = "2.0";
    card.sensorStatus = {{6, 3}};
    EXPECT_EQ(device->MonitorTheDevice(), 3) << "the new sensor is polled at once";
    const auto posted = TakePosted();
    EXPECT_EQ(posted.order, (Texts{"UpdateFWVersion", "Clear", "InsertSensor", "InsertSensor",
                                   "UpdateControllerInventory", "SetSensorValue"}))
        << "a sensor that never had a reading has none to lose";
    EXPECT_EQ(posted.firmware.at(0).version, "2.0");
    EXPECT_EQ(posted.firmware.at(0).deviceLdid, "NIC.Slot.3");
    EXPECT_EQ(posted.sensors.at(1).sensor.sensorKind, SENSOR_KIND_PROBE);

    card.firmware = "";
    card.sensorStatus.clear();
    Cycles(9);
    EXPECT_EQ(CyclesWith(PLAYED_GET_FIRMWARE, 2), "2:1 ") << "a failed cycle doesn't count";
    EXPECT_EQ(Cycles(8).order, Texts{}) << "no version to publish, and the same repository";

    card.Replace({{.id = 5}}); // without entities from now on
    card.commandStatus = {{PLAYED_GET_REPOSITORY_INFO, 3}};
    EXPECT_EQ(Cycles(10).order, Texts{}) << "a failed look is none, and no failure";
    card.commandStatus.clear();
    EXPECT_EQ(Cycles(10).order, (Texts{"Clear", "UpdateControllerInventory", "SetSensorValue"}))
        << "a card that has had entities is modeled by them";
}

TEST_F(NicDeviceTest, AChangedRepositoryOfOneControllerHasAllModeledAnew) {
    card.Add({.id = 5});
    cards[1].Add({.id = 7});
    Plug(2);
    Inventory();
    Cycles(5);
    card.Replace({{.id = 6}});
    EXPECT_EQ(Cycles(1).order,
              (Texts{"UpdateFWVersion", "InsertSensor", "UpdateControllerInventory", "InsertSensor",
                     "UpdateControllerInventory", "SetSensorValue"}));
}

TEST_F(NicDeviceTest, ATableWaitsForTheCycleButNotForItsPause) {
    card.Add({});
    cards[1].Add({});
    Plug(2);
    Inventory();
    std::future<void> table;
    std::atomic<pid_t> thread{0};
    const auto taken = [&] { return table.wait_for(0s) == std::future_status::ready; };
    const auto waits = [&](std::span<const std::uint8_t>) {
        EXPECT_TRUE(Eventually([&] { return (thread != 0 && Sleeps(thread)) || taken(); }));
        EXPECT_FALSE(taken());
    };
    card.onRequest = [&](std::span<const std::uint8_t> request) {
        table = std::async(std::launch::async, [&] {
            thread = gettid();
            device->UpdateEIDTables({}, {});
        });
        waits(request);
    };
    cards[1].onRequest = waits;
    OnPause([&](auto) { EXPECT_TRUE(table.wait_for(30s) == std::future_status::ready); });
    Cycles(1);
    OnPause({});
    EXPECT_EQ(TakePauses(), Pauses{5s});
}

TEST_F(NicDeviceTest, StatesComeAfterReadingsAndTheirFailureIsNoFailureOfTheCycle) {
    card.Add({.id = 5});
    card.AddState(20, 144);
    cards[1].AddState(20, 144);
    Plug(2);
    Inventory();
    auto posted = Cycles(1);
    EXPECT_EQ(posted.order,
              (Texts{"SetSensorValue", "UpdateDeviceHealthStatus", "SetStateSensorValue",
                     "UpdateDeviceHealthStatus", "SetStateSensorValue"}));
    EXPECT_EQ(posted.states.at(0).searchKey, "/sensor/state/sensorid_ctrl1_20");
    EXPECT_EQ(posted.states.at(1).searchKey, "/sensor/state/sensorid_ctrl2_20");
    card.commandStatus = {{PLAYED_GET_STATE_READINGS, 9}};
    posted = Cycles(1);
    EXPECT_EQ(posted.order, Texts{"SetStateSensorValue"});
    EXPECT_EQ(posted.states.at(0).stateSetNames, Texts{""}) << "a state of nothing";
}

} // namespace
} // namespace vantric::test
