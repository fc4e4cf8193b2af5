// SPDX-License-Identifier: Apache-2.0
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

TEST_F(AcceleratorBoardTest, HasEachThermalReadingMoveTheSharedSensorOfEachAccelerator) {
    modeling->UpdateSensorTempValue(77, readingUnavailable, SENSOR_KIND_THERMAL, third);
    Texts moved;
    for (const auto& request : TakePosted().values) {
        moved.push_back(request.pathText);
        EXPECT_EQ(request.value, 2147483647.0);
        EXPECT_EQ(request.sensorKind, SENSOR_KIND_THERMAL);
        EXPECT_EQ(request.deviceLdid, "NIC.Slot.3");
    }
    EXPECT_EQ(moved,
              (Texts{"21_1_sensorid_1", "22_1_sensorid_1", "23_1_sensorid_1", "24_1_sensorid_1",
                     "25_1_sensorid_1", "26_1_sensorid_1", "27_1_sensorid_1", "28_1_sensorid_1"}));
    for (const std::uint8_t kind : {SENSOR_KIND_THERMAL_PROBE, SENSOR_KIND_PROBE}) {
        modeling->UpdateSensorTempValue(77, 5, kind, first);
        EXPECT_EQ(TakePosted().values.at(0).pathText, "_sensorid_ctrl1_77");
    }
    SetPostResult(-5);
    modeling->UpdateSensorTempValue(77, 5, SENSOR_KIND_THERMAL, first);
    ASSERT_EQ(log.Messages(1).size(), 8U);
    EXPECT_EQ(log.Messages(1)[7], "Failed for virtual slot = 28, execRet = -5\n");
}

TEST_F(AcceleratorBoardTest, NamesASensorByTheLowBytesOfItsEntity) {
    const struct {
        Entity entity;
        std::uint8_t unit;
        const char* name;
        Texts shown;
    } rows[] = {
        {{68, 1, 1},
         7,
         "GPU_TOTAL_POWER",
         {"P/UBB.Integrated.1-1_sensorid_12 I:UBB add_in_card_1 1 0 UBB.Integrated.1-1"}},
        {{68, 1, 1}, 2, "", {}},
        {{68, 1, 1}, 2, "gpu3", {}},
        {{68, 1, 1}, 2, "GPU8", {}},
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
                          .State(2, {32917, 9, 9}) // no such accelerators
                          .State(3, {32917, 256, 9})
                          .State(4, {32917, 260, 9}) // the low byte counts
                          .State(5, {32917, 8, 1})
                          .State(6, {300, 1, 1});
    const Texts expected{"I:UBB/sensor/state/sensorid_1 0 UBB.Integrated.1-1",
                         "C/sensor/state/sensorid_ctrl1_2 9 NIC.Slot.3",
                         "C/sensor/state/sensorid_ctrl1_3 256 NIC.Slot.3",
                         slots + "23/sensor/state/sensorid_4 0 ProcAccelerator.Slot.23-1",
                         slots + "21/sensor/state/sensorid_5 0 ProcAccelerator.Slot.21-1",
                         "C/ethernet_1/sensor/state/sensorid_ctrl1_6 1 NIC.Slot.3"};
    EXPECT_EQ(Shown(Publish(card, first)), expected);
    EXPECT_EQ(Shown(Publish(card, first)), expected) << "building anew finds another place";
}

} // namespace
} // namespace vantric::test
