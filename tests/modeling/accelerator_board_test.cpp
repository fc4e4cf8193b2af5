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

TEST_F(AcceleratorBoardTest, KnowsItsPartsByTheirNames) {
    const struct {
        std::string name;
        std::string slot; ///< of an accelerator; none: the board
    } rows[] = {
        {"UBB", ""},
        {"GPU_TOTAL_POWER", ""},
        {"IBC", ""},
        {"RETIMER_0_TEMP", ""},
        {"RETIMER_1_TEMP", ""},
        {"RETIMER_2_TEMP", ""},
        {"GPU0", "24"},
        {"GPU1", "28"},
        {"GPU2", "27"},
        {"GPU3", "23"},
        {"GPU4", "22"},
        {"GPU5", "26"},
        {"GPU6", "25"},
        {"GPU7", "21"},
    };
    for (const auto& [name, slot] : rows) {
        const std::string ldid =
            slot.empty() ? "UBB.Integrated.1-1" : "ProcAccelerator.Slot." + slot + "-1";
        EXPECT_EQ(Shown(Publish(Board().Numeric(12, {68, 1, 1}, 2, "TEMP " + name + " HBM"))),
                  Texts{"T/" + ldid + "_sensorid_12 " + (slot.empty() ? "I:UBB" : slots + slot) +
                        " add_in_card_1 1 " + (slot.empty() ? "0" : slot) + " " + ldid})
            << name;
    }
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
    ToldCard card = Board()
                        .State(21, {68, 1, 1})
                        .State(22, {32917, 9, 9}) // no such accelerators
                        .State(23, {32917, 256, 9})
                        .State(24, {32917, 260, 9}) // the low byte counts
                        .State(25, {300, 1, 1});
    Texts expected{"I:UBB/sensor/state/sensorid_21 0 UBB.Integrated.1-1",
                   "C/sensor/state/sensorid_ctrl1_22 9 NIC.Slot.3",
                   "C/sensor/state/sensorid_ctrl1_23 256 NIC.Slot.3",
                   slots + "23/sensor/state/sensorid_24 0 ProcAccelerator.Slot.23-1"};
    std::uint16_t instance = 0;
    for (const std::string slot : {"24", "28", "27", "23", "22", "26", "25", "21"}) {
        ++instance;
        card.State(instance, {32917, instance, 9});
        expected.push_back(slots + slot + "/sensor/state/sensorid_" + std::to_string(instance) +
                           " 0 ProcAccelerator.Slot." + slot + "-1");
    }
    expected.push_back("C/ethernet_1/sensor/state/sensorid_ctrl1_25 1 NIC.Slot.3");
    EXPECT_EQ(Shown(Publish(card, first)), expected);
    EXPECT_EQ(Shown(Publish(card, first)), expected) << "building anew finds another place";
}

} // namespace
} // namespace vantric::test
