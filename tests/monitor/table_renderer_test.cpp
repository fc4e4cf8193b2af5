#include "monitor/table_renderer.hpp"

#include <gmock/gmock.h>

namespace {

using monitor::RenderTable;
using monitor::Row;
using testing::ElementsAre;

const std::vector<Row> rows{
    {"NIC in Slot 3", "Ambient", "41.5", "C", "ok", "ok", ""},
    {"NIC in Slot 3 Port 1", "Power Sensor 6", "n/a", "W", "no reading", "unknown", ""},
};

TEST(TableRenderer, AlignsTheColumns) {
    EXPECT_THAT(
        RenderTable(rows, 0),
        ElementsAre("CARD                  OBJECT          VALUE  UNIT  STATUS      HEALTH",
                    "NIC in Slot 3         Ambient          41.5  C     ok          ok",
                    "NIC in Slot 3 Port 1  Power Sensor 6    n/a  W     no reading  unknown"));
    EXPECT_THAT(RenderTable({}, 80), ElementsAre("CARD  OBJECT  VALUE  UNIT  STATUS  HEALTH"));
}

TEST(TableRenderer, LetsTheWidestColumnsGiveWay) {
    EXPECT_THAT(RenderTable(rows, 50),
                ElementsAre("CARD      OBJECT    VALUE  UNIT  STATUS    HEALTH",
                            "NIC ~t 3  Ambient    41.5  C     ok        ok",
                            "NI~3~t 1  Powe~r 6    n/a  W     no r~ing  unknown"));
}

TEST(TableRenderer, CutsNamesSoThatTheyStayApart) {
    const std::vector<std::pair<std::string, std::string>> names{
        {"Proc Accelerator Controller in Slot 21 of Instance 1", "Proc~21~nce 1"},
        {"Proc Accelerator Controller in Slot 22 of Instance 1", "Proc~22~nce 1"},
        {"Integrated Universal baseboard of Instance 1", "Integr~ance 1"},
        {"NIC in Slot 1 (NIC.Embedded.1)", "NIC i~1~ed.1)"},
        {"NIC in Slot 1 (NIC.Slot.1)", "NIC i~1~ot.1)"},
        {"System Board Proc Accel1 Temp", "System~1 Temp"},
        {"Card of serial 1234567890123456", "Card o~123456"},
        {"State 20 StateSensor.20.1", "State 20~20.1"},
        {"Cable right 31 near", "Cable~31 near"},
        {"Temperature Sensors", "Temper~ensors"},
    };
    for (const auto& [name, cut] : names) {
        const Row row{name, "ambient", "41", "C", "ok", "ok", ""};
        EXPECT_THAT(RenderTable({row}, 51).at(1), testing::StartsWith(cut + "  ")) << name;
    }
}

TEST(TableRenderer, KeepsToAnyWidth) {
    for (std::size_t width = 1; width < 90; ++width) {
        for (const std::string& line : RenderTable(rows, width)) {
            EXPECT_LE(line.size(), width);
        }
    }
}

TEST(TableRenderer, MakesCellsPrintable) {
    const auto table = RenderTable({{"a\x1b[2J", "b\nc", "1",
                                     "\xc2\xb0"
                                     "C",
                                     "", "", ""}},
                                   0);
    EXPECT_EQ(table.at(1), "a?[2J  b?c         1  ?C");
}

} // namespace
