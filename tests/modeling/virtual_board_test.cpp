#include "modeling_fixture.hpp"

#include <array>

namespace vantric::test {
namespace {

constexpr PciIdentity boardIdentity{0x1002, 0x1002, 0, 0x75A0};
const std::string accelerators =
    "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/";
const std::string boardPath = "/xyz/openbmc_project/inventory/system/UBB";

class VirtualBoardTest : public ModelingTest {
protected:
    VirtualBoardTest() { Begin(false, boardIdentity); }

    /** A board whose root is the card and which holds two logical accelerators. */
    static ToldCard Board() {
        ToldCard card;
        card.Physical(1, {68, 1, 0}, {{32917, 1, 1}, {32917, 8, 1}, {300, 1, 1}});
        return card;
    }
};

TEST_F(VirtualBoardTest, IsKnownByItsIdentity) {
    const struct {
        PciIdentity identity;
        bool board;
    } cases[] = {
        {{0x1002, 0x1002, 0, 0x75A0}, true},  {{0x1002, 0x1002, 9, 0x75A3}, true},
        {{0x1002, 0x1002, 0, 0x75A1}, false}, {{0x1002, 0x1003, 0, 0x75A0}, false},
        {{0x15B3, 0x1002, 0, 0x75A0}, false},
    };
    for (const auto& [identity, board] : cases) {
        Begin(false, identity);
        const auto posted = Publish(Board().Numeric(1, {68, 1, 1}));
        EXPECT_EQ(posted.sensors.size(), board ? 8U : 1U);
    }
}

TEST_F(VirtualBoardTest, TheSharedSensorStandsForEachAccelerator) {
    const auto posted = Publish(Board().Numeric(1, {32917, 8, 1}, 7));
    ASSERT_EQ(posted.sensors.size(), 8U);
    for (int index = 0; index < 8; ++index) {
        const auto& sensor = posted.sensors[static_cast<std::size_t>(index)];
        const std::string slot = std::to_string(21 + index);
        EXPECT_EQ(sensor.objectPath,
                  temperatures + "ProcAccelerator.Slot." + slot + "_1_sensorid_1");
        EXPECT_EQ(sensor.resolvedLdid, "ProcAccelerator.Slot." + slot + "-1");
        EXPECT_EQ(sensor.inventoryPath, accelerators + slot);
        EXPECT_EQ(sensor.slot, 21 + index);
        EXPECT_EQ(sensor.deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(sensor.entityName, "accelerator_8");
        EXPECT_EQ(sensor.sensor.entityInstance, 8);
    }
}

TEST_F(VirtualBoardTest, ASensorsNameTellsWhatItStandsFor) {
    const struct {
        std::uint16_t id;
        std::uint8_t unit;
        const char* name;
        std::string path;
        std::string ldid;
        int slot;
        std::string inventory;
    } cases[] = {
        {12, 2, "TEMP GPU3 HBM", temperatures + "ProcAccelerator.Slot.23-1_sensorid_12",
         "ProcAccelerator.Slot.23-1", 23, accelerators + "23"},
        {13, 7, "GPU0", powers + "ProcAccelerator.Slot.24-1_sensorid_13",
         "ProcAccelerator.Slot.24-1", 24, accelerators + "24"},
        {40, 7, "GPU_TOTAL_POWER", powers + "UBB.Integrated.1-1_sensorid_40", "UBB.Integrated.1-1",
         0, boardPath},
        {41, 2, "RETIMER_2_TEMP", temperatures + "UBB.Integrated.1-1_sensorid_41",
         "UBB.Integrated.1-1", 0, boardPath},
    };
    for (const auto& row : cases) {
        const auto posted = Publish(Board().Numeric(row.id, {68, 1, 1}, row.unit, row.name));
        ASSERT_EQ(posted.sensors.size(), 1U) << row.name;
        const auto& sensor = posted.sensors[0];
        EXPECT_EQ(sensor.objectPath, row.path) << row.name;
        EXPECT_EQ(sensor.resolvedLdid, row.ldid) << row.name;
        EXPECT_EQ(sensor.slot, row.slot) << row.name;
        EXPECT_EQ(sensor.inventoryPath, row.inventory) << row.name;
        EXPECT_EQ(sensor.deviceLdid, "NIC.Slot.3") << row.name;
        EXPECT_EQ(sensor.entityName, "add_in_card_1") << row.name;
    }
}

TEST_F(VirtualBoardTest, ASensorWhoseNameTellsNothingIsNotPublished) {
    const CapturedLog log;
    const auto posted = Publish(Board()
                                    .Numeric(12, {68, 1, 1})
                                    .Numeric(13, {68, 1, 1}, 2, "gpu3")
                                    .Numeric(14, {68, 1, 1}, 2, "GPU8"));
    EXPECT_TRUE(posted.sensors.empty());
    EXPECT_TRUE(log.Messages(1).empty());
}

TEST_F(VirtualBoardTest, AnEntityIsNamedByTheLowByteOfItsTypeAndInstance) {
    const struct {
        Entity entity;
        const char* name;
        int instance;
    } cases[] = {
        {{32836, 2, 1}, "add_in_card_2", 2},
        {{32917, 256, 1}, "accelerator", 0},
        {{32917, 259, 1}, "accelerator_3", 3},
        {{300, 2, 1}, "add_in_card1", 2}, // 44 has no word
    };
    for (const auto& [entity, name, instance] : cases) {
        const auto card =
            ToldCard().Physical(1, {60, 1, 0}, {entity}).Numeric(12, entity, 2, "GPU1");
        const auto posted = Publish(card);
        ASSERT_EQ(posted.sensors.size(), 1U) << name;
        EXPECT_EQ(posted.sensors[0].entityName, name);
        EXPECT_EQ(posted.sensors[0].sensor.entityInstance, instance) << name;
    }
}

TEST_F(VirtualBoardTest, AStateSensorStandsForTheBoardOrAnAccelerator) {
    const auto card = Board()
                          .State(1, {68, 1, 1})
                          .State(2, {32917, 1, 1})
                          .State(3, {32917, 8, 1})
                          .State(4, {32917, 9, 1})   // no such accelerator
                          .State(5, {32917, 260, 1}) // the low byte counts
                          .State(6, {300, 1, 1});
    const struct {
        std::string path;
        std::string ldid;
        int instance;
    } expected[] = {
        {boardPath + "/sensor/state/sensorid_1", "UBB.Integrated.1-1", 0},
        {base + "3/sensor/state/sensorid_4", "NIC.Slot.3", 9},
        {accelerators + "23/sensor/state/sensorid_5", "ProcAccelerator.Slot.23-1", 0},
        {accelerators + "24/sensor/state/sensorid_2", "ProcAccelerator.Slot.24-1", 0},
        {accelerators + "21/sensor/state/sensorid_3", "ProcAccelerator.Slot.21-1", 0},
        {base + "3/ethernet_1/sensor/state/sensorid_6", "NIC.Slot.3", 1},
    };
    for (int round = 0; round < 2; ++round) { // building anew finds the same
        const auto posted = Publish(card);
        ASSERT_EQ(posted.stateSensors.size(), std::size(expected));
        for (std::size_t index = 0; index < std::size(expected); ++index) {
            const auto& sensor = posted.stateSensors[index];
            EXPECT_EQ(sensor.statePath, expected[index].path);
            EXPECT_EQ(sensor.secondLdid, expected[index].ldid) << sensor.statePath;
            EXPECT_EQ(sensor.entityInstance, expected[index].instance) << sensor.statePath;
            EXPECT_EQ(sensor.deviceLdid, "NIC.Slot.3") << sensor.statePath;
        }
    }
}

TEST_F(VirtualBoardTest, AThermalReadingGoesToAllAccelerators) {
    modeling->UpdateSensorTempValue(77, 2147483647, SENSOR_KIND_THERMAL, 1);
    const auto posted = TakePosted();
    ASSERT_EQ(posted.values.size(), 8U);
    for (std::size_t index = 0; index < 8; ++index) {
        const auto& value = posted.values[index];
        EXPECT_EQ(value.pathText, std::to_string(21 + index) + "_1_sensorid_1");
        EXPECT_EQ(value.value, 2147483647.0);
        EXPECT_EQ(value.deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(value.slot, 3);
        EXPECT_EQ(value.sensorKind, SENSOR_KIND_THERMAL);
        EXPECT_EQ(value.controller, 1);
    }
}

TEST_F(VirtualBoardTest, OtherReadingsGoToTheirSensor) {
    for (const std::uint8_t kind : {1, 3}) {
        modeling->UpdateSensorTempValue(77, 5, kind, 1);
        const auto posted = TakePosted();
        ASSERT_EQ(posted.values.size(), 1U);
        EXPECT_EQ(posted.values[0].pathText, "_sensorid_77");
    }
}

TEST_F(VirtualBoardTest, ReadingsThatTheChannelDoesntTakeAreTold) {
    SetChannelResult(-5);
    const CapturedLog log;
    modeling->UpdateSensorTempValue(77, 5, SENSOR_KIND_THERMAL, 1);
    ASSERT_EQ(log.Messages(1).size(), 8U);
    EXPECT_EQ(log.Messages(1)[7], "Failed for virtual slot = 28, execRet = -5\n");
}

} // namespace
} // namespace vantric::test
