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
}

TEST(TableRenderer, LetsTheWidestColumnsGiveWay) {
    EXPECT_THAT(RenderTable(rows, 50),
                ElementsAre("CARD      OBJECT    VALUE  UNIT  STATUS    HEALTH",
                            "NIC in ~  Ambient    41.5  C     ok        ok",
                            "NIC in ~  Power S~    n/a  W     no read~  unknown"));
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

TEST(TableRenderer, ShowsTheHeadingOfAnEmptyTable) {
    EXPECT_THAT(RenderTable({}, 80), ElementsAre("CARD  OBJECT  VALUE  UNIT  STATUS  HEALTH"));
}

} // namespace
