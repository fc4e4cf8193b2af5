// SPDX-License-Identifier: Apache-2.0
/** Devices, controllers and state sensors as clients see them, and the removal of all of them. */
#include "dbus_handler/published_bus.hpp"

namespace vantric::test {

namespace {

using Texts = std::vector<std::string>;

constexpr auto accelerator = "ProcAccelerator.Slot.5-1";
const std::string cardPath = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3";
const std::string gpuPath =
    "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/5";
const std::string statePath = cardPath + "/networkcontroller_1/ethernet_1/sensor/state/sensorid_9";

class InventoryObjects : public PublishedBus {
protected:
    static FruInventoryRequest Fru() {
        FruInventoryRequest request;
        request.fields.iana = "674";
        request.fields.firmwareVersion = "1.0";
        request.fields.cpuAffinity = 2;
        request.deviceLdid = card;
        request.objectPath = cardPath;
        return request;
    }

    static PlainInventoryRequest Plain(const std::string& ldid, const std::string& path,
                                       std::uint16_t slot) {
        return {.firmwareVersion = "1.0",
                .slot = slot,
                .deviceLdid = ldid,
                .objectPath = path,
                .identity = {},
                .cpuAffinity = 1,
                .resolvedLdid = {}};
    }

    static StateSensorRequest State() {
        StateSensorRequest request;
        request.entityInstance = 1;
        request.sensorId = 9;
        request.memberCount = 2;
        request.memberNames = {"Link", "Health"};
        request.statePath = statePath;
        request.deviceLdid = card;
        request.secondLdid = card;
        request.searchKey = "/sensor/state/sensorid_9";
        return request;
    }
};

TEST_F(InventoryObjects, ShowTheFruOfACard) {
    auto request = Fru();
    request.fields.model = "the \x80 model";
    EXPECT_EQ(0, Do(dbusFruDataInsert, request));
    EXPECT_EQ((Texts{"FRU", "Inventory"}), Told(Sent(), "InterfacesAdded", cardPath));
    EXPECT_EQ("\"the \xEF\xBF\xBD model\"", Object(inventoryRoot, cardPath).at("FRU").at("Model"));
    request.fields.model = "M2";
    EXPECT_EQ(0, Do(dbusFruDataInsert, request));
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

TEST_F(InventoryObjects, ReadTheIanaAsANumber) {
    const std::pair<const char*, const char*> rows[] = {{"674", "674"},
                                                        {"", "0"},
                                                        {"letters", "0"},
                                                        {" 12abc", "12"},
                                                        {"0x10", "0"},
                                                        {"99999999999", "0"},
                                                        {"4294967295", "4294967295"}};
    for (const auto& [text, number] : rows) {
        auto request = Fru();
        request.fields.iana = text;
        Do(dbusFruDataInsert, request);
        EXPECT_EQ(number, Object(inventoryRoot, cardPath).at("FRU").at("IANA")) << text;
        objects.Clear({card, 0, CLEAR_ALL});
    }
}

TEST_F(InventoryObjects, ShowControllersAtTheirUnchangedPath) {
    const std::string path = cardPath + "/networkcontroller_1";
    EXPECT_EQ(0, Do(dbusControllerData, ControllerRequest{path, card, 3, 200}));
    EXPECT_EQ(Texts{"ControllerInventory"}, Told(Sent(), "InterfacesAdded", path));
    EXPECT_EQ("200", Object(inventoryRoot, path).at("ControllerInventory").at("CPUAffinity"));
    EXPECT_EQ(0, Do(dbusControllerData, ControllerRequest{"", card, 3, 1}));
    EXPECT_EQ(Texts{}, TakeLog());

    EXPECT_EQ(0, Do(dbusControllerData, ControllerRequest{path, card, 3, 1}));
    const auto log = TakeLog();
    ASSERT_EQ(1U, log.size());
    EXPECT_TRUE(log[0].starts_with("1 UpdateControllerInventory: sd_bus_add_object_vtable"));
    EXPECT_EQ("200", Object(inventoryRoot, path).at("ControllerInventory").at("CPUAffinity"));
}

TEST_F(InventoryObjects, ArentMadeWhereTheBusTakesNone) {
    auto fru = Fru();
    fru.objectPath = "no path";
    auto state = State();
    state.statePath = "no path";
    auto sensor = CardSensor(SENSOR_KIND_PROBE);
    sensor.objectPath = "no path";
    // A controller's path isn't made fit for the bus.
    EXPECT_EQ(0, Do(dbusControllerData, ControllerRequest{cardPath + "/no-path", card, 3, 1}));
    EXPECT_EQ(0, Do(dbusFruDataInsert, fru));
    EXPECT_EQ(0, Do(dbusInvDataInsert, Plain(card, "no path", 3)));
    EXPECT_EQ(0, Do(dbusInvDataInsert, Plain(accelerator, "no path", 5)));
    EXPECT_EQ(0, Do(dbusStateSensorDataInsert, state));
    EXPECT_EQ(0, Do(dbusDataInsert, sensor));
    Texts writers;
    for (const auto& line : TakeLog()) {
        writers.push_back(line.substr(0, line.find(": sd_bus_add_object_vtable")));
    }
    EXPECT_EQ((Texts{"1 UpdateControllerInventory", "1 createDbusObj", "1 createDbusObj",
                     "1 createDbusObj", "1 createDbusObj", "1 createDbusObj"}),
              writers);
    EXPECT_EQ(std::vector<Signal>{}, Sent());
}

TEST_F(InventoryObjects, FollowFirmwareAndHealth) {
    Do(dbusFruDataInsert, Fru());
    Do(dbusInvDataInsert, Plain(card, cardPath + "/second", 3));
    Do(dbusInvDataInsert, Plain(accelerator, gpuPath, 5));
    Sent();
    for (int i = 0; i < 2; ++i) {
        Do(dbusFWDataUpdate, FirmwareRequest{card, "2.0\xFF"});
        Do(dbusUpdateDeviceHealthStatus, HealthStatusRequest{card, 4});
        Do(dbusFWDataUpdate, FirmwareRequest{"NIC.Slot.30", "3.0"});
        Do(dbusUpdateDeviceHealthStatus, HealthStatusRequest{"NIC.Slot.", 5});
    }
    const auto signals = Sent();
    EXPECT_EQ(4U, signals.size()) << "one for each object and property";
    for (const auto& path : {cardPath, cardPath + "/second"}) {
        const auto inventory = Object(inventoryRoot, path).at("Inventory");
        EXPECT_EQ("\"2.0\xEF\xBF\xBD\"", inventory.at("FirmwareVersion"));
        EXPECT_EQ("4", inventory.at("DeviceStatus"));
    }
    Do(dbusUpdateDeviceHealthStatus, HealthStatusRequest{accelerator, 3});
    Do(dbusFWDataUpdate, FirmwareRequest{accelerator, "4.0"});
    EXPECT_EQ((Texts{"DeviceStatus=3", "FirmwareVersion=\"4.0\""}), Changes(gpuPath));
    EXPECT_EQ(Texts{}, TakeLog());
}

TEST_F(InventoryObjects, ShowStateSensorsAndTheirStates) {
    EXPECT_EQ(0, Do(dbusStateSensorDataInsert, State()));
    EXPECT_EQ(Texts{"StateSensor"}, Told(Sent(), "InterfacesAdded", statePath));
    const auto details = [this] {
        return Object(inventoryRoot, statePath).at("StateSensor").at("StateSensorDetails");
    };
    EXPECT_EQ("{\"Health\": (\"Unavailable\", \"Unavailable\"), "
              "\"Link\": (\"Unavailable\", \"Unavailable\")}",
              details());
    auto update = State();
    update.memberNames = {"Link"};
    update.stateSetNames = {"Link State"};
    update.valueTexts = {"Connected"};
    for (int i = 0; i < 2; ++i) {
        Do(dbusSetStateSensorValue, update);
    }
    EXPECT_EQ(Texts{"StateSensorDetails={\"Link\": (\"Link State\", \"Connected\")}"},
              Changes(statePath));
    update.searchKey = "/sensor/state/sensorid_";
    update.memberNames = {};
    Do(dbusSetStateSensorValue, update); // a digit follows: no object
    update.searchKey = "/sensor/state/sensorid_91";
    Do(dbusSetStateSensorValue, update);
    EXPECT_EQ(Texts{}, Changes(statePath));
    update.searchKey = "/sensor/state/sensorid_9";
    Do(dbusSetStateSensorValue, update);
    EXPECT_EQ("{}", details());

    EXPECT_EQ(0, Do(dbusStateSensorDataInsert, State()));
    EXPECT_EQ("{}", details()) << "an object that exists stays as it is";
    auto nowhere = State();
    nowhere.statePath.clear();
    EXPECT_EQ(-1, Do(dbusStateSensorDataInsert, nowhere));
    EXPECT_EQ(Texts{"1 dbusStateSensorDataInsert: Dbus path emtpy!"}, TakeLog());
}

TEST_F(InventoryObjects, GoInOrderAndOnlyAsFarAsAsked) {
    Do(dbusDataInsert, CardSensor());
    Do(dbusStateSensorDataInsert, State());
    Do(dbusFruDataInsert, Fru());
    Do(dbusControllerData, ControllerRequest{cardPath + "/networkcontroller_1", card, 3, 1});
    Do(dbusInvDataInsert, Plain(accelerator, gpuPath, 5));
    Sent();
    Do(dbusClear, ClearRequest{card, 3, CLEAR_SENSORS});
    auto signals = Sent();
    EXPECT_EQ(Texts{"StateSensor"}, Told(signals, "InterfacesRemoved", statePath));
    EXPECT_EQ(9U, signals.size());
    EXPECT_FALSE(Object(inventoryRoot, cardPath).empty());

    Do(dbusClear, ClearRequest{card, 3, CLEAR_ALL});
    signals = Sent();
    EXPECT_EQ((Texts{"Inventory", "FRU"}), Told(signals, "InterfacesRemoved", cardPath));
    EXPECT_EQ(3U, signals.size());
    EXPECT_FALSE(Object(inventoryRoot, gpuPath).empty());
    Do(dbusClear, ClearRequest{accelerator, 5, CLEAR_ALL});
    EXPECT_EQ((Texts{"Accelerator", "Inventory", "Definitions"}),
              Told(Sent(), "InterfacesRemoved", gpuPath));
    TakeLog();
    Do(dbusClear, ClearRequest{card, 3, CLEAR_ALL}); // nothing is left
    EXPECT_EQ(std::vector<Signal>{}, Sent());
    EXPECT_EQ(Texts{}, TakeLog());
}

} // namespace

} // namespace vantric::test
