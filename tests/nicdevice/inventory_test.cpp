/** The inventory of a network card: what it asks, what it publishes, and how it ends. */
#include "nic_device_fixture.hpp"

namespace vantric::test {
namespace {

/** A FRU table with one general record, which tells the model. */
Bytes FruOf(const std::string& model) {
    return Bytes{1, 0, 1, 1, 1, 2, 4}.Add(model);
}

TEST_F(NicDeviceTest, InventoryObjectTellsTheFruDataIfThereIs) {
    struct Row {
        const char* name;
        std::optional<Bytes> table;
        std::uint16_t failing;
        std::optional<std::string> model; ///< none: an object without FRU data
        std::string firmware = "1.0";
    };
    const Bytes general = FruOf("X100");
    const std::vector<Row> rows{
        {"no such type", {}, 0, {}},
        {"general record", general, 0, "X100"},
        {"no general record", Bytes{1, 0, 2, 0, 1}, 0, ""},
        {"metadata missing", general, PLAYED_GET_FRU_METADATA, {}},
        {"table missing", general, PLAYED_GET_FRU_TABLE, {}},
        {"no firmware", general, PLAYED_GET_FIRMWARE, "X100", ""},
        {"no firmware, no FRU data", {}, PLAYED_GET_FIRMWARE, {}, ""},
    };
    cards[0].Add({});
    Plug(1);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        cards[0].fruTable = row.table;
        cards[0].commandStatus = {{row.failing, 3}};
        const auto posted = Inventory();
        EXPECT_EQ(device->State(), DEVICE_MONITORING);
        ASSERT_EQ(posted.fruInventories.size(), row.model ? 1U : 0U);
        ASSERT_EQ(posted.plainInventories.size(), row.model ? 0U : 1U);
        const auto expectDevice = [&row](const auto& request, const auto& fields) {
            EXPECT_EQ(request.deviceLdid, "NIC.Slot.3");
            EXPECT_EQ(request.objectPath, base + '3');
            EXPECT_EQ((Ids{request.slot, fields.identity.deviceId, fields.cpuAffinity}),
                      (Ids{3, 4, 7}));
            EXPECT_EQ(fields.firmwareVersion, row.firmware);
        };
        for (const auto& request : posted.fruInventories) {
            expectDevice(request, request.fields);
            EXPECT_EQ(request.fields.model, *row.model);
        }
        for (const auto& request : posted.plainInventories) {
            expectDevice(request, request);
        }
    }
}

TEST_F(NicDeviceTest, EachEndpointTellsItsOwnFruDataAndFirmware) {
    cards[0].fruTable = FruOf("X100");
    cards[1].fruTable = FruOf("Y200");
    cards[1].firmware = "2.0";
    cards[0].Add({});
    cards[1].Add({});
    Plug(2);
    device->InventoryTheDevice();
    Texts told;
    for (const auto& request : TakePosted().fruInventories) {
        told.push_back(request.fields.model + ' ' + request.fields.firmwareVersion);
    }
    EXPECT_EQ(told, (Texts{"X100 1.0", "Y200 2.0"}));
}

TEST_F(NicDeviceTest, AnInventoryWithoutEndpointsSucceeds) {
    Plug(0);
    EXPECT_EQ(Inventory().order, Texts{"Clear"});
    EXPECT_EQ(device->State(), DEVICE_MONITORING);
}

TEST_F(NicDeviceTest, TellsWhatTheChannelDoesntTake) {
    const auto refused = [this] {
        return log.Count(4, "OneWayChannel_Execute ERROR, execRet = -5\n");
    };
    cards[0].Add({});
    Plug(1);
    SetPostResult(-5);
    Inventory();
    EXPECT_EQ(refused(), 3) << "device, sensor and controller";
    cards[0].fruTable = FruOf("X100");
    Inventory();
    EXPECT_EQ(refused(), 6);
    CyclesWith(0, 11);
    EXPECT_EQ(refused(), 7) << "firmware";
}

TEST_F(NicDeviceTest, AnInventoryAsksInAFixedOrder) {
    const std::map<std::string, std::size_t> typeAt{{"0.3", 8}, {"0.5", 3}};
    Texts asked;
    cards[0].onRequest = [&](const Bytes& request) {
        const auto command = std::to_string(request.at(1)) + '.' + std::to_string(request.at(2));
        const auto type = typeAt.find(command);
        asked.push_back(type == typeAt.end()
                            ? command
                            : command + " of " + std::to_string(request.at(type->second)));
    };
    cards[0].fruTable = FruOf("X100");
    cards[0].pdrs.push_back(NumericSensorPdr{.init = 2}.Build());
    Plug(1);
    Inventory();
    EXPECT_EQ(asked,
              (Texts{"0.4", "5.2", "4.1", "4.2", "0.3 of 0", "0.3 of 2", "0.3 of 4", "0.3 of 5",
                     "0.5 of 0", "0.6", "0.6", "0.6", "0.2", "2.80", "2.81", "2.16"}));
}

TEST_F(NicDeviceTest, AFailedInventoryChangesToI2cOrTriesTheNewEndpoints) {
    // GetPLDMTypes, GetPLDMCommands, GetTID, GetPDRRepositoryInfo, GetPDR; then what no inventory
    // needs: GetPLDMVersion, SelectPLDMVersion.
    const Ids needed{0x0004, 0x0005, 0x0002, 0x0250, 0x0251, enableSensor};
    const Ids others{0x0003, 0x0006};
    cards[0].Add({});
    cards[1].pdrs.push_back(NumericSensorPdr{.init = 2}.Build());
    cards[2].Add({});
    Plug(controllers);
    for (const auto command : needed) {
        SCOPED_TRACE(command);
        cards[1].commandStatus = {{command, 3}};
        useNewEndPoints = false;
        device->InventoryTheDevice();
        EXPECT_EQ(device->State(), DEVICE_SWITCH_TO_I2C);
        EXPECT_EQ(log.Messages(1).back(), "PLDM Inventory failed for slot 3\n");
        EXPECT_EQ(TakePauses(), Pauses{2s});
        useNewEndPoints = true;
        device->InventoryTheDevice();
        EXPECT_EQ(device->State(), DEVICE_INVENTORY);
        EXPECT_EQ(TakePauses(), (Pauses{2s, 5s}));
    }
    EXPECT_EQ(log.Count(1, "PLDM Inventory failed for slot 3\n"), 6) << "none with new endpoints";
    EXPECT_EQ(cards[2].Asked(), 0U) << "the pass ends with the step that fails";
    EXPECT_EQ(TakePosted().controllers.size(), 0U);
    for (const auto command : others) {
        SCOPED_TRACE(command);
        cards[1].commandStatus = {{command, 3}};
        EXPECT_EQ(Inventory().controllers.size(), controllers);
        EXPECT_EQ(device->State(), DEVICE_MONITORING);
    }
}

} // namespace
} // namespace vantric::test
