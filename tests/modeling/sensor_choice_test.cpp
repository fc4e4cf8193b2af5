// SPDX-License-Identifier: Apache-2.0
#include "modeling/sensor_choice.hpp"

#include <gtest/gtest.h>

namespace vantric::test {
namespace {

TEST(SensorChoice, OfAnAcceleratorGoesByUnitEntityAndTable) {
    constexpr std::uint16_t listed = 405;
    constexpr std::uint16_t other = 406;
    constexpr auto dropped = static_cast<SensorKind>(255);
    const struct {
        std::uint16_t sensorId;
        std::uint16_t entityType;
        std::uint8_t baseUnit;
        int ofCard;
        int ofBoard;
    } rows[] = {
        {listed, 149, 2, 1, 1},
        {listed, 68, 3, 1, 1},
        {listed, 0x7FFF, 2, 1, 1},
        {listed, 32836, 2, 2, 2},
        {listed, 0x8000, 3, 2, 2},
        {other, 68, 2, dropped, 3},
        {other, 79, 3, dropped, 3},
        {other, 148, 2, dropped, 3},
        {other, 24576, 2, dropped, 3},
        {other, 149, 2, dropped, dropped},
        {other, 32917, 2, dropped, dropped},
        {other, 68, 7, 3, 3},
        {other, 79, 7, 3, 3},
        {other, 148, 7, 3, 3},
        {other, 24576, 7, 3, 3},
        {other, 32917, 7, 3, 3},
        {other, 149, 7, 3, dropped},
        {listed, 32836, 7, 3, dropped},
        {listed, 149, 4, dropped, dropped},
        {listed, 68, 0, dropped, dropped},
    };
    const auto isInTable = [](std::uint16_t sensorId) { return sensorId == listed; };
    for (const auto& [id, type, unit, ofCard, ofBoard] : rows) {
        SCOPED_TRACE(testing::Message() << id << ' ' << type << ' ' << int{unit});
        EXPECT_EQ(ClassifyNumericSensor(isInTable, id, type, unit).value_or(dropped), ofCard);
        EXPECT_EQ(ClassifyUbbNumericSensor(isInTable, id, type, unit).value_or(dropped), ofBoard);
    }
}

} // namespace
} // namespace vantric::test
