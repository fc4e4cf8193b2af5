// SPDX-License-Identifier: Apache-2.0
/** What a numeric sensor PDR becomes. */
#include "pdr_builders.hpp"
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include "pldm_cmds/real32.hpp"

#include <gtest/gtest.h>

#include <bit>

using namespace vantric;

namespace {

constexpr std::uint32_t current = 0xF1F2F000;

/** The one sensor that comes of a record, or none. */
std::shared_ptr<__Temp_sensors> Parse(const Bytes& record, std::uint32_t version = current) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(2, {version});
    endpoint.HandlePDR(record);
    const auto& sensors = endpoint.Data().numericSensors;
    EXPECT_LE(sensors.size(), 1U);
    return sensors.empty() ? nullptr : sensors.front();
}

TEST(NumericSensorPdr, VersionChoosesTheLayout) {
    struct Row {
        std::uint32_t version;
        std::size_t idWidth; ///< 0: no sensor
    };
    const std::vector<Row> rows{{0xF1F1F100, 2}, {0xFFFFFFFF, 2}, {0x00F0F2F1, 2}, {0x00F1F2F1, 2},
                                {0x00F2F1F1, 2}, {0x00F2F2F1, 2}, {0xF1F1F001, 0}, {0xF1F1F0FF, 0},
                                {0xF1F1F000, 1}, {0x00F1F1F1, 1}, {0xF1F0F000, 1}};
    for (const auto& row : rows) {
        const auto sensor = Parse(
            NumericSensorPdr{.id = 0x0105, .idWidth = row.idWidth == 0 ? 2 : row.idWidth}.Build(),
            row.version);
        EXPECT_EQ(sensor != nullptr, row.idWidth != 0) << std::hex << row.version;
        if (sensor) {
            EXPECT_EQ(sensor->sensorID, row.idWidth == 1 ? 5 : 0x0105) << std::hex << row.version;
        }
    }
}

TEST(NumericSensorPdr, MakesOneSensorForEachVersion) {
    ScriptedEndpoint endpoint;
    endpoint.Supports(0, {current});
    endpoint.HandlePDR(NumericSensorPdr{}.Build());
    EXPECT_TRUE(endpoint.Data().numericSensors.empty());
    endpoint.Supports(2);
    endpoint.HandlePDR(NumericSensorPdr{}.Build());
    EXPECT_TRUE(endpoint.Data().numericSensors.empty());
    endpoint.Supports(2, {current, 0xF1F2F200});
    endpoint.HandlePDR(NumericSensorPdr{}.Build());
    EXPECT_EQ(endpoint.cmds.GetAllSensorIDs(), (std::vector<std::uint16_t>{5, 5}));
}

TEST(NumericSensorPdr, KeepsTemperatureAndPowerOnly) {
    const std::vector<std::pair<std::uint8_t, std::string>> rows{
        {1, ""}, {2, "temp5"}, {3, "temp5"},  {4, "temp5"},
        {5, ""}, {6, ""},      {7, "power5"}, {8, ""}};
    for (const auto& [unit, name] : rows) {
        const auto sensor = Parse(NumericSensorPdr{.baseUnit = unit}.Build());
        EXPECT_EQ(sensor ? sensor->auxSensorName : "", name) << int{unit};
    }
    const auto unnamed = Parse(NumericSensorPdr{.auxNames = 0}.Build());
    ASSERT_TRUE(unnamed);
    EXPECT_EQ(unnamed->auxSensorName, "");
}

TEST(NumericSensorPdr, FieldWidthsFollowDataSizeAndRangeFormat) {
    constexpr std::uint64_t all = 0xFFFFFFFFFFFFFFFF;
    for (std::uint8_t size = 0; size <= 8; ++size) {
        for (std::uint8_t format = 0; format <= 9; ++format) {
            NumericSensorPdr pdr{
                .dataSize = size, .hysteresis = all, .maxReadable = all, .rangeFormat = format};
            pdr.slots[3] = all;
            const auto sensor = Parse(pdr.Build());
            ASSERT_EQ(sensor != nullptr, size <= 7) << int{size};
            if (!sensor) {
                continue;
            }
            const std::array<std::int64_t, 4> ones{0xFF, 0xFFFF, 0xFFFFFFFF, -1};
            EXPECT_EQ(sensor->hysteresis, ones[size / 2]) << "zero-extended";
            EXPECT_EQ(sensor->maxReadable, ones[size / 2]);
            EXPECT_EQ(sensor->minReadable, 1);
            const std::array<std::int64_t, 10> warning{
                0xFF, 0xFF, 0xFFFF, 0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, -1, -1, 0};
            EXPECT_EQ(sensor->upperThresholdWarning, warning[format]) << int{format};
            EXPECT_EQ(sensor->lowerThresholdFatal, format <= 8 ? 6 : 0) << int{format};
        }
    }
}

TEST(NumericSensorPdr, SupportedBitsSelectThresholds) {
    const std::array<std::int64_t __Temp_sensors::*, 6> members{
        &__Temp_sensors::upperThresholdWarning,  &__Temp_sensors::upperThresholdCritical,
        &__Temp_sensors::upperThresholdFatal,    &__Temp_sensors::lowerThresholdWarning,
        &__Temp_sensors::lowerThresholdCritical, &__Temp_sensors::lowerThresholdFatal};
    for (std::size_t bit = 0; bit < members.size(); ++bit) {
        const auto sensor = Parse(
            NumericSensorPdr{.supportedThresholds = static_cast<std::uint8_t>(0xC0 | 1 << bit),
                             .slots = std::vector<std::uint64_t>(9, 0)}
                .Build());
        ASSERT_TRUE(sensor);
        for (std::size_t other = 0; other < members.size(); ++other) {
            const std::int64_t expected = other == bit && bit < 3 ? 255 : 0;
            EXPECT_EQ((*sensor).*members[other], expected) << bit << " " << other;
        }
    }
}

TEST(DecodeReal32, IsTheValueButForWhatIsNotANumber) {
    for (const std::uint32_t word : {0x3DCCCCCDU, 0xBF000000U, 0x00000001U, 0x807FFFFFU,
                                     0x7F7FFFFFU, 0x42280000U, 0x00800000U}) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(decodeReal32(word)), word) << std::hex << word;
    }
    EXPECT_EQ(decodeReal32(0), 0.0F);
    for (const std::uint32_t word : {0x7F800000U, 0xFF800000U, 0x7FC00000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(decodeReal32(word), 255.0F) << std::hex << word;
    }
    EXPECT_EQ(decodeReal32(0x80000000), -0x1p-127F);
}

TEST(Mantcal, RefusesOtherBases) {
    const CapturedLog log;
    EXPECT_EQ(mantcal(0, 1U << 22), 0.5F);
    EXPECT_EQ(mantcal(1, 1U << 22), 1.5F);
    EXPECT_EQ(mantcal(2, 1U << 22), 0.0F);
    EXPECT_EQ(log.Count(4, "Wrong base value for mantissa calculation\n\n"), 1);
}

TEST(CompactSensorPdr, NameEndsAtNulAtTheRecordOrAt96) {
    struct Row {
        std::uint8_t length;
        Bytes name;
        std::string expected;
    };
    const std::vector<Row> rows{
        {0, Bytes().Add("GPU"), "power12"},
        {9, Bytes().Add("GPU0").AddZeros(1).Add("tail"), "GPU0"},
        {4, Bytes().Add("GPU0"), "GPU0"},
        {100, Bytes().Add(std::string(100, 'x')), std::string(96, 'x')},
        {4, Bytes(), ""},
    };
    for (const auto& row : rows) {
        const auto sensor =
            Parse(CompactSensorPdr{.nameLength = row.length, .name = row.name}.Build());
        ASSERT_TRUE(sensor);
        EXPECT_EQ(sensor->auxSensorName, row.expected);
    }
    EXPECT_FALSE(Parse(CompactSensorPdr{.baseUnit = 5}.Build()));
}

} // namespace
