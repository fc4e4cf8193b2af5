#include "modeling/accelerator_board.hpp"

#include "modeling_fixture.hpp"

namespace vantric::test {
namespace {

class AcceleratorBoardTest : public ModelingTest {
protected:
    AcceleratorBoardTest() { Begin({0x1002, 0x1002, 0, 0x75A0}); }

    /** A board whose root is the card and which holds two logical accelerators. */
    static ToldCard Board() {
        return ToldCard().Physical(1, {68, 1, 0}, {{32917, 1, 1}, {32917, 8, 1}, {300, 1, 1}});
    }

    CapturedLog log;
};

const std::string slots = "I:accelerator/ProcAccelerator/Slot/";

TEST_F(AcceleratorBoardTest, IsKnownByItsIdentity) {
    const struct {
        PciIdentity identity;
        bool board;
    } rows[] = {
        {{0x1002, 0x1002, 0, 0x75A0}, true},  {{0x1002, 0x1002, 9, 0x75A3}, true},
        {{0x1002, 0x1002, 0, 0x75A1}, false}, {{0x1002, 0x1003, 0, 0x75A0}, false},
        {{0x15B3, 0x1002, 0, 0x75A0}, false},
    };
    for (const auto& [identity, board] : rows) {
        EXPECT_EQ(accelerator_board::IsBoard(identity), board);
    }
}

TEST_F(AcceleratorBoardTest, ShowsItsSharedSensorAndItsReadingsAtEachAccelerator) {
    Texts expected;
    for (const std::string slot : {"21", "22", "23", "24", "25", "26", "27", "28"}) {
        expected.push_back("T/ProcAccelerator.Slot." + slot + "_1_sensorid_1 " + slots + slot +
                           " accelerator_8 8 " + slot + " ProcAccelerator.Slot." + slot + "-1");
    }
    EXPECT_EQ(Shown(Publish(Board().Numeric(1, {32917, 8, 1}, BASE_UNIT_WATTS))), expected);

    modeling->UpdateSensorTempValue(77, readingUnavailable, SENSOR_KIND_THERMAL, third);
    const auto values = TakePosted().values;
    ASSERT_EQ(values.size(), 8U);
    for (std::size_t index = 0; index < 8; ++index) {
        EXPECT_EQ(values[index].pathText, std::to_string(21 + index) + "_1_sensorid_1");
        EXPECT_EQ(values[index].value, 2147483647.0);
        EXPECT_EQ(values[index].deviceLdid, "NIC.Slot.3");
        EXPECT_EQ(values[index].slot, 3);
        EXPECT_EQ(values[index].sensorKind, SENSOR_KIND_THERMAL);
        EXPECT_EQ(values[index].controller, 3);
    }
    for (const std::uint8_t kind : {SENSOR_KIND_THERMAL_PROBE, SENSOR_KIND_PROBE}) {
        modeling->UpdateSensorTempValue(77, 5, kind, first);
        EXPECT_EQ(TakePosted().values.at(0).pathText, "_sensorid_ctrl1_77");
    }
    SetPostResult(-5);
    modeling->UpdateSensorTempValue(77, 5, SENSOR_KIND_THERMAL, first);
    ASSERT_EQ(log.Messages(1).size(), 8U);
    EXPECT_EQ(log.Messages(1)[7], "Failed for virtual slot = 28, execRet = -5\n");
}

TEST_F(AcceleratorBoardTest, ShowsASensorWhereItsNameTells) {
    const struct {
        Entity entity;
        std::uint8_t unit;
        const char* name;
        Texts shown;
    } rows[] = {
        {{68, 1, 1},
         2,
         "TEMP GPU3 HBM",
         {"T/ProcAccelerator.Slot.23-1_sensorid_12 " + slots +
          "23 add_in_card_1 1 23 ProcAccelerator.Slot.23-1"}},
        {{68, 1, 1},
         7,
         "GPU_TOTAL_POWER",
         {"P/UBB.Integrated.1-1_sensorid_12 I:UBB add_in_card_1 1 0 UBB.Integrated.1-1"}},
        {{68, 1, 1}, 2, "", {}},
        {{68, 1, 1}, 2, "gpu3", {}},
        {{68, 1, 1}, 2, "GPU8", {}},
        // An entity is named by the low bytes of its type and instance.
        {{32836, 2, 1},
         2,
         "UBB",
         {"T/UBB.Integrated.1-1_sensorid_12 I:UBB add_in_card_2 2 0 UBB.Integrated.1-1"}},
        {{32917, 256, 1},
         2,
         "UBB",
         {"T/UBB.Integrated.1-1_sensorid_12 I:UBB accelerator 0 0 UBB.Integrated.1-1"}},
        {{32917, 259, 1},
         2,
         "UBB",
         {"T/UBB.Integrated.1-1_sensorid_12 I:UBB accelerator_3 3 0 UBB.Integrated.1-1"}},
        {{300, 2, 1}, // 44 has no word
         2,
         "UBB",
         {"T/UBB.Integrated.1-1_sensorid_12 I:UBB add_in_card1 2 0 UBB.Integrated.1-1"}},
    };
    for (const auto& [entity, unit, name, shown] : rows) {
        EXPECT_EQ(
            Shown(Publish(
                ToldCard().Physical(1, {60, 1, 0}, {entity}).Numeric(12, entity, unit, name))),
            shown);
    }
    EXPECT_EQ(log.Messages(1), Texts{});
}

TEST_F(AcceleratorBoardTest, ShowsAStateSensorAtItselfOrAtAnAccelerator) {
    const auto card = Board()
                          .State(1, {68, 1, 1})
                          .State(2, {32917, 1, 1})
                          .State(3, {32917, 8, 1})
                          .State(4, {32917, 9, 1})   // no such accelerator
                          .State(5, {32917, 260, 1}) // the low byte counts
                          .State(6, {300, 1, 1});
    const Texts expected{
        "I:UBB/sensor/state/sensorid_1 0 UBB.Integrated.1-1",
        "C/sensor/state/sensorid_ctrl1_4 9 NIC.Slot.3",
        slots + "23/sensor/state/sensorid_5 0 ProcAccelerator.Slot.23-1",
        slots + "24/sensor/state/sensorid_2 0 ProcAccelerator.Slot.24-1",
        slots + "21/sensor/state/sensorid_3 0 ProcAccelerator.Slot.21-1",
        "C/ethernet_1/sensor/state/sensorid_ctrl1_6 1 NIC.Slot.3",
    };
    EXPECT_EQ(Shown(Publish(card, first)), expected);
    EXPECT_EQ(Shown(Publish(card, first)), expected) << "building anew finds another place";
}

} // namespace
} // namespace vantric::test
