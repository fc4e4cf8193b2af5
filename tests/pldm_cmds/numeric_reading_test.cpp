// SPDX-License-Identifier: Apache-2.0
/** The numeric poll: conversion of a reading, what is reported and what a failure does. */
#include "scripted_endpoint.hpp"
#include "support/captured_log.hpp"

#include "pldm_cmds/sensor_conversion.hpp"

#include <gtest/gtest.h>

#include <limits>

using namespace vantric;

namespace {

constexpr std::int32_t unavailable = 2147483647;

/** An answer to GetSensorReading. */
struct Reading {
    std::uint64_t raw = 0;
    std::uint8_t dataSize = 4;
    std::uint8_t operational = 0;
    std::uint8_t present = 1;

    Answer Build() const {
        return Good(Bytes{dataSize, operational, 0, present, 2, 3}.AddWide(raw, 8));
    }
};

/** A sensor in degrees C that has read nothing yet. */
std::shared_ptr<__Temp_sensors> MakeSensor(std::uint16_t id) {
    auto sensor = std::make_shared<__Temp_sensors>();
    sensor->sensorID = id;
    sensor->baseUnit = 2;
    sensor->resolution = 1.0F;
    sensor->temperature = unavailable;
    sensor->sensorNeededFor = 1;
    return sensor;
}

struct ConversionCase {
    const char* name;
    Reading reading;
    std::int32_t expected;
    std::uint8_t baseUnit = 2;
    std::int8_t unitModifier = 0;
    float resolution = 1.0F;
    float offset = 0.0F;
};

class Conversion : public testing::TestWithParam<ConversionCase> {};

TEST_P(Conversion, GivesTheWholeNumber) {
    const auto& row = GetParam();
    auto sensor = MakeSensor(1);
    sensor->baseUnit = row.baseUnit;
    sensor->unitModifier = row.unitModifier;
    sensor->resolution = row.resolution;
    sensor->offset = row.offset;
    sensor->presentReading = 33;
    sensor->temperature = -12345;
    ScriptedEndpoint endpoint;
    endpoint.Answers({row.reading.Build()});
    ReadingMap readings;

    EXPECT_EQ(endpoint.cmds.GetSensorReading(sensor, readings), 0);

    EXPECT_EQ(readings, (ReadingMap{{1, {1, row.expected}}}));
    EXPECT_EQ(sensor->temperature, row.expected);
}

constexpr float huge = std::numeric_limits<float>::max();

INSTANTIATE_TEST_SUITE_P(
    All, Conversion,
    testing::Values(
        ConversionCase{"U8", {.raw = 0xFF, .dataSize = 0}, 255},
        ConversionCase{"I8", {.raw = 0xFF, .dataSize = 1}, -1},
        ConversionCase{"U16", {.raw = 0xFFFF, .dataSize = 2}, 65535},
        ConversionCase{"I16", {.raw = 0xFFFE, .dataSize = 3}, -2},
        ConversionCase{"U32StaysPositive", {.raw = 0xFFFFFFFF, .dataSize = 4}, unavailable},
        ConversionCase{"I32", {.raw = 0xFFFFFFFF, .dataSize = 5}, -1},
        ConversionCase{"U64", {.raw = 1000, .dataSize = 6}, 1000},
        ConversionCase{"I64", {.raw = ~0ULL, .dataSize = 7}, -1},
        ConversionCase{"UnknownSizeKeepsOldReading", {.raw = 99, .dataSize = 9}, 33},
        ConversionCase{"UnknownPresentState", {.raw = 55, .present = 0}, 0},
        ConversionCase{"Disabled", {.raw = 55, .operational = 1}, 0},
        ConversionCase{"Failed", {.raw = 55, .operational = 4}, unavailable},
        ConversionCase{"FailedIsScaled", {.operational = 4}, 214748364, 2, -1},
        ConversionCase{"FailedSaturates", {.operational = 4}, unavailable, 2, 1},
        ConversionCase{"Resolution", {.raw = 455}, 45, 2, 0, 0.1F},
        ConversionCase{"Modifier", {.raw = 455}, 45, 2, -1},
        ConversionCase{"ModifierAgain", {.raw = 45}, 4, 2, -1},
        ConversionCase{"TowardZero", {.raw = 0}, 0, 2, 0, 1.0F, -0.5F},
        ConversionCase{"Fahrenheit77", {.raw = 77}, 25, 3},
        ConversionCase{"Fahrenheit78", {.raw = 78}, 25, 3},
        ConversionCase{"Kelvin", {.raw = 300}, 26, 4},
        ConversionCase{"Watts", {.raw = 12}, 13, 7, 0, 1.0F, 1.9F},
        ConversionCase{"OtherUnit", {.raw = 12}, 0, 5},
        // 16777217 isn't a float; one rounding of the sum gives an odd tenth away.
        ConversionCase{"RawIsSinglePrecision", {.raw = 16777217}, 16777216},
        // Rounded once the product leaves a trace below the offset, rounded twice none.
        ConversionCase{"OneRounding", {.raw = 4097}, 1, 2, 0, 4097.0F, -16785408.0F},
        ConversionCase{
            "SaturatesHigh", {.raw = ~0ULL >> 1, .dataSize = 7}, unavailable, 2, 0, huge},
        ConversionCase{"SaturatesLow",
                       {.raw = 1ULL << 63, .dataSize = 7},
                       std::numeric_limits<std::int32_t>::min(),
                       3,
                       127,
                       huge},
        ConversionCase{"ModifierSaturates", {.raw = 3}, unavailable, 2, 127},
        ConversionCase{"SmallestModifier", {.raw = 3}, 0, 2, -128}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Truncation, NeverLeavesTheRange) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(TruncateToInt32(infinity), unavailable);
    EXPECT_EQ(TruncateToInt32(-infinity), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(TruncateToInt32(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(TruncateToInt32(2147483646.9), 2147483646);
    EXPECT_EQ(TruncateToInt32(-2147483648.9), std::numeric_limits<std::int32_t>::min());
}

TEST(GetSensorReading, StoresStatesAndReportsChangesOnly) {
    const CapturedLog log;
    auto sensor = MakeSensor(7);
    ScriptedEndpoint endpoint;
    endpoint.Answers({Reading{.raw = 41}.Build(), Reading{.raw = 41}.Build()});
    ReadingMap readings;
    EXPECT_EQ(endpoint.cmds.GetSensorReading(sensor, readings), 0);
    EXPECT_EQ(readings, (ReadingMap{{7, {1, 41}}}));
    EXPECT_EQ(sensor->presentState, 1);
    EXPECT_EQ(sensor->previousState, 2);
    EXPECT_EQ(sensor->eventState, 3);
    EXPECT_EQ(sensor->presentReading, 41);
    EXPECT_EQ(log.Count(4, "Slot[3]::SensorID[7]::OperationalState[0]::PresentState[1]::"
                           "Reading[41]\n"),
              1);

    readings.clear();
    EXPECT_EQ(endpoint.cmds.GetSensorReading(sensor, readings), 0);
    EXPECT_TRUE(readings.empty());
}

TEST(GetSensorReading, ACompactSensorThatReadsZeroReportsNothingAtFirst) {
    auto sensor = MakeSensor(7);
    sensor->temperature = 0;
    ScriptedEndpoint endpoint;
    endpoint.Answers({Reading{.raw = 0}.Build()});
    ReadingMap readings;
    EXPECT_EQ(endpoint.cmds.GetSensorReading(sensor, readings), 0);
    EXPECT_TRUE(readings.empty());
}

struct OutcomeCase {
    const char* name;
    Answer answer;
    int status;
    bool reported;
    bool goesOn;
    std::string message;
};

class Outcome : public testing::TestWithParam<OutcomeCase> {};

TEST_P(Outcome, OfAFailureInAPoll) {
    const auto& row = GetParam();
    CapturedLog log;
    ScriptedEndpoint endpoint;
    auto first = MakeSensor(77);
    first->temperature = 30;
    endpoint.Data().numericSensors = {first, MakeSensor(2)};
    endpoint.Answers({row.answer, Reading{.raw = 50}.Build()});
    ReadingMap readings;

    EXPECT_EQ(endpoint.cmds.GetAllSensorReading(readings), row.status);

    ReadingMap expected;
    if (row.reported) {
        expected[77] = {1, unavailable};
    }
    if (row.goesOn) {
        expected[2] = {1, 50};
    }
    EXPECT_EQ(readings, expected);
    EXPECT_EQ(first->temperature, row.reported ? unavailable : 30);
    EXPECT_EQ(endpoint.Asked(), row.goesOn ? 2U : 1U);
    const auto messages = log.Messages(1);
    EXPECT_EQ(messages.empty() ? "" : messages.front(), row.message);

    // Alone it ends with the same status, of which those of a table are told elsewhere.
    endpoint.transport.answers = {row.answer};
    log.Take();
    EXPECT_EQ(endpoint.cmds.GetSensorReading(77, readings), row.status);
    EXPECT_EQ(log.Count(4, "Failed for Slot:[3] and SensorID=[77]\n"),
              row.status == 8 || row.status == 9 ? 0 : 1);
}

std::string NotSent(int status) {
    return "Send failed for EID = 9 and status = " + std::to_string(status) + "\n";
}

INSTANTIATE_TEST_SUITE_P(
    All, Outcome,
    testing::Values(
        OutcomeCase{"OtherCode", Reply(2), 1, false, true, "Failed for EID = 9 and error = 2\n"},
        OutcomeCase{"LastCode", Reply(255), 1, false, true, "Failed for EID = 9 and error = 255\n"},
        OutcomeCase{"Failure", NoAnswer(1), 1, true, true, NotSent(1)},
        OutcomeCase{"NoResponse", NoAnswer(3), 3, true, true, NotSent(3)},
        OutcomeCase{"NotDelivered", NoAnswer(4), 4, true, true, NotSent(4)},
        OutcomeCase{"NotSupported", Reply(5), 5, false, true, ""},
        OutcomeCase{"Discovery", NoAnswer(8), 8, false, false, NotSent(8)},
        OutcomeCase{"NewEndPoints", NoAnswer(9), 9, true, false, NotSent(9)},
        OutcomeCase{"InvalidSensor", Reply(128), 10, false, false, "Invalid Sensor ID = 77\n"},
        OutcomeCase{"CommandFailed", Reply(1), 11, true, true, "CMD failed for EID = 9\n"},
        OutcomeCase{"NotReady", Reply(4), 12, false, true, "Device is not ready for EID = 9\n"},
        OutcomeCase{"SensorNotReady", Reply(129), 12, false, true,
                    "Device is not ready for EID = 9\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GetSensorReading, ReportsAFailureOnceAndItsEnd) {
    ScriptedEndpoint endpoint;
    auto sensor = MakeSensor(4);
    sensor->temperature = 20;
    endpoint.Data().numericSensors = {sensor};
    endpoint.Answers({NoAnswer(3), NoAnswer(3), Reading{.raw = 20}.Build()});
    const std::vector<ReadingMap> polls{{{4, {1, unavailable}}}, {}, {{4, {1, 20}}}};
    for (const auto& expected : polls) {
        ReadingMap readings;
        endpoint.cmds.GetSensorReading(4, readings);
        EXPECT_EQ(readings, expected);
    }
}

TEST(GetSensorReading, ExceptionOfTheTransportIsAFailure) {
    ScriptedEndpoint endpoint;
    auto sensor = MakeSensor(4);
    sensor->temperature = 20;
    endpoint.transport.respond = [](const Bytes&) -> Answer { throw std::bad_alloc(); };
    ReadingMap readings;
    EXPECT_EQ(endpoint.cmds.GetSensorReading(sensor, readings), 1);
    EXPECT_EQ(sensor->temperature, unavailable);
}

TEST(GetAllSensorReading, KeepsTheLastFailure) {
    const CapturedLog log;
    ScriptedEndpoint endpoint;
    endpoint.Data().numericSensors = {MakeSensor(1), MakeSensor(2), MakeSensor(3)};
    endpoint.Answers({NoAnswer(3), Reply(5), Reading{.raw = 9}.Build()});
    ReadingMap readings;
    EXPECT_EQ(endpoint.cmds.GetAllSensorReading(readings), 5);
    EXPECT_EQ(readings, (ReadingMap{{3, {1, 9}}})) << "1 was unavailable before";
    EXPECT_EQ(log.Count(4, "Failed for Slot:[3] and SensorID=[1]\n"), 1);
    EXPECT_EQ(log.Count(4, "Failed for Slot:[3] and SensorID=[2]\n"), 1);
    EXPECT_EQ(log.Count(1, "Send failed for EID = 9 and status = 3\n"), 1);
}

TEST(SetNumericeSensorEnable, AsksOnlyThoseThatWantItAndStopsAtAFailure) {
    const CapturedLog log;
    ScriptedEndpoint endpoint;
    EXPECT_EQ(endpoint.cmds.SetNumericeSensorEnable(), 0);
    for (std::uint16_t id = 1; id <= 4; ++id) {
        auto sensor = MakeSensor(id);
        sensor->sensorInit = id == 2 ? 1 : 2;
        endpoint.Data().numericSensors.push_back(sensor);
    }
    endpoint.Answers({Good(), Reply(0x80)});
    EXPECT_EQ(endpoint.cmds.SetNumericeSensorEnable(), 1);
    ASSERT_EQ(endpoint.Asked(), 2U);
    EXPECT_EQ(endpoint.transport.requests[1][3], 3);
    EXPECT_EQ(log.Count(4, "Sensor 1 Enabled for EID = 9\n"), 1);
}

} // namespace
