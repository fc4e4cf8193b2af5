#include "modeling_fixture.hpp"

namespace vantric::test {
namespace {

class VirtualBoardTest : public ModelingTest {
protected:
    VirtualBoardTest() { Begin(false, {0x1002, 0x1002, 0, 0x75A0}); }

    /** A board whose root is the card and which holds two logical accelerators. */
    static ToldCard Board() {
        return ToldCard().Physical(1, {68, 1, 0}, {{32917, 1, 1}, {32917, 8, 1}, {300, 1, 1}});
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
        EXPECT_EQ(Publish(Board().Numeric(1, {68, 1, 1})).sensors.size(), board ? 8U : 1U);
    }
}

TEST_F(VirtualBoardTest, TheSharedSensorStandsForEachAccelerator) {
    Texts expected;
    for (const std::string slot : {"21", "22", "23", "24", "25", "26", "27", "28"}) {
        expected.push_back("T:ProcAccelerator.Slot." + slot +
                           "_1_sensorid_1, I:accelerator/ProcAccelerator/Slot/" + slot +
                           ", accelerator_8, 8, " + slot + " ProcAccelerator.Slot." + slot + "-1");
    }
    EXPECT_EQ(ShowAll(Publish(Board().Numeric(1, {32917, 8, 1}, 7)).sensors), expected);
}

TEST_F(VirtualBoardTest, ASensorsNameTellsWhatItStandsFor) {
    const struct {
        std::uint8_t unit;
        const char* name;
        const char* shown;
    } cases[] = {
        {2, "TEMP GPU3 HBM",
         "T:ProcAccelerator.Slot.23-1_sensorid_12, I:accelerator/ProcAccelerator/Slot/23, "
         "add_in_card_1, 1, 23 ProcAccelerator.Slot.23-1"},
        {7, "GPU0",
         "P:ProcAccelerator.Slot.24-1_sensorid_12, I:accelerator/ProcAccelerator/Slot/24, "
         "add_in_card_1, 1, 24 ProcAccelerator.Slot.24-1"},
        {7, "GPU_TOTAL_POWER",
         "P:UBB.Integrated.1-1_sensorid_12, I:UBB, add_in_card_1, 1, 0 UBB.Integrated.1-1"},
        {2, "RETIMER_2_TEMP",
         "T:UBB.Integrated.1-1_sensorid_12, I:UBB, add_in_card_1, 1, 0 UBB.Integrated.1-1"},
    };
    for (const auto& [unit, name, shown] : cases) {
        EXPECT_EQ(ShowAll(Publish(Board().Numeric(12, {68, 1, 1}, unit, name)).sensors),
                  Texts{shown});
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
        const auto posted =
            Publish(ToldCard().Physical(1, {60, 1, 0}, {entity}).Numeric(12, entity, 2, "GPU1"));
        EXPECT_EQ(posted.sensors.at(0).entityName, name);
        EXPECT_EQ(posted.sensors.at(0).sensor.entityInstance, instance) << name;
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
    const std::string slots = "I:accelerator/ProcAccelerator/Slot/";
    const Texts expected{
        "I:UBB/sensor/state/sensorid_1, 0, UBB.Integrated.1-1",
        "B3/sensor/state/sensorid_4, 9, NIC.Slot.3",
        slots + "23/sensor/state/sensorid_5, 0, ProcAccelerator.Slot.23-1",
        slots + "24/sensor/state/sensorid_2, 0, ProcAccelerator.Slot.24-1",
        slots + "21/sensor/state/sensorid_3, 0, ProcAccelerator.Slot.21-1",
        "B3/ethernet_1/sensor/state/sensorid_6, 1, NIC.Slot.3",
    };
    EXPECT_EQ(ShowAll(Publish(card).stateSensors), expected);
    EXPECT_EQ(ShowAll(Publish(card).stateSensors), expected) << "building anew finds another place";
}

TEST_F(VirtualBoardTest, AThermalReadingGoesToAllAccelerators) {
    modeling->UpdateSensorTempValue(77, 2147483647, SENSOR_KIND_THERMAL, 6);
    const auto posted = TakePosted();
    ASSERT_EQ(posted.values.size(), 8U);
    for (std::size_t index = 0; index < 8; ++index) {
        const auto& value = posted.values[index];
        EXPECT_EQ(value.pathText, std::to_string(21 + index) + "_1_sensorid_1");
        EXPECT_EQ(value.value, 2147483647.0);
        EXPECT_EQ(value.deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(value.slot, 3);
        EXPECT_EQ(value.sensorKind, SENSOR_KIND_THERMAL);
        EXPECT_EQ(value.controller, 6);
    }
    for (const std::uint8_t kind : {SENSOR_KIND_THERMAL_PROBE, SENSOR_KIND_PROBE}) {
        modeling->UpdateSensorTempValue(77, 5, kind, 1);
        EXPECT_EQ(TakePosted().values.at(0).pathText, "_sensorid_77");
    }
}

TEST_F(VirtualBoardTest, ReadingsThatTheChannelDoesntTakeAreTold) {
    SetPostResult(-5);
    const CapturedLog log;
    modeling->UpdateSensorTempValue(77, 5, SENSOR_KIND_THERMAL, 1);
    ASSERT_EQ(log.Messages(1).size(), 8U);
    EXPECT_EQ(log.Messages(1)[7], "Failed for virtual slot = 28, execRet = -5\n");
}

} // namespace
} // namespace vantric::test
