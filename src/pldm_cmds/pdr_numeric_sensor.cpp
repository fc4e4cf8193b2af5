// SPDX-License-Identifier: Apache-2.0
/** Numeric Sensor PDR, type 2, in its two layouts (DSP0248). */
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/real32.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "pldm_cmds/sensor_name.hpp"

#include <algorithm>
#include <array>
#include <optional>

namespace vantric {

namespace {

/** The layouts differ in the width of the sensor id; every later field moves with it. */
enum class Layout { CURRENT, OLD };

std::optional<Layout> LayoutOfVersion(std::uint32_t version) {
    // Some endpoints send 1.2.0, 1.2.1, 1.1.2 and 1.2.2 with their bytes in reverse order.
    constexpr std::array<std::uint32_t, 4> reversed{0x00F0F2F1, 0x00F1F2F1, 0x00F2F1F1, 0x00F2F2F1};
    constexpr std::uint32_t firstCurrent = 0xF1F1F100;
    constexpr std::uint32_t lastOld = 0xF1F1F000;
    if (version >= firstCurrent || std::ranges::find(reversed, version) != reversed.end()) {
        return Layout::CURRENT;
    }
    if (version <= lastOld) {
        return Layout::OLD;
    }
    return std::nullopt;
}

/** Width in bytes of a field of sensorDataSize. */
std::optional<std::size_t> WidthOfDataSize(std::uint8_t sensorDataSize) {
    constexpr std::array<std::size_t, 8> widths{1, 1, 2, 2, 4, 4, 8, 8};
    if (sensorDataSize >= widths.size()) {
        return std::nullopt;
    }
    return widths[sensorDataSize];
}

/** Width in bytes of a range field. Format 6 is real32, and taken as an unsigned word. */
std::optional<std::size_t> WidthOfRangeFormat(std::uint8_t rangeFieldFormat) {
    constexpr std::array<std::size_t, 9> widths{1, 1, 2, 2, 4, 4, 4, 8, 8};
    if (rangeFieldFormat >= widths.size()) {
        return std::nullopt;
    }
    return widths[rangeFieldFormat];
}

std::int64_t ReadValue(ByteReader& body, std::size_t width) {
    return static_cast<std::int64_t>(body.ReadUnsigned(width));
}

/** Reads the thresholds that supportedThresholds selects, from slots of a fixed width. */
void ReadThresholds(ByteReader& body, __Temp_sensors& sensor) {
    struct Row {
        std::size_t slot;
        std::int64_t __Temp_sensors::*threshold;
        std::int64_t insteadOfZero;
    };
    // Row n belongs to bit n of supportedThresholds.
    static constexpr std::array<Row, 6> rows{{
        {3, &__Temp_sensors::upperThresholdWarning, 255},
        {5, &__Temp_sensors::upperThresholdCritical, 255},
        {7, &__Temp_sensors::upperThresholdFatal, 255},
        {4, &__Temp_sensors::lowerThresholdWarning, 0},
        {6, &__Temp_sensors::lowerThresholdCritical, 0},
        {8, &__Temp_sensors::lowerThresholdFatal, 0},
    }};
    const auto width = WidthOfRangeFormat(sensor.rangeFieldFormat);
    if (!width) {
        return;
    }
    const std::size_t slots = body.Position();
    for (std::size_t bit = 0; bit < rows.size(); ++bit) {
        if ((sensor.supportedThresholds >> bit & 1) == 0) {
            continue;
        }
        const Row& row = rows[bit];
        body.Seek(slots + row.slot * *width);
        const std::int64_t value = ReadValue(body, *width);
        sensor.*row.threshold = value == 0 ? row.insteadOfZero : value;
    }
}

/** Reads hysteresis, intervals, limits and thresholds: fields as wide as sensorDataSize says. */
void ReadRanges(ByteReader& body, std::size_t width, __Temp_sensors& sensor) {
    sensor.hysteresis = ReadValue(body, width);
    sensor.supportedThresholds = body.Read<std::uint8_t>();
    sensor.thresholdAndHysteresisVolatility = body.Read<std::uint8_t>();
    sensor.stateTransitionInterval = ReadReal32(body);
    sensor.updateInterval = ReadReal32(body);
    sensor.maxReadable = ReadValue(body, width);
    sensor.minReadable = ReadValue(body, width);
    sensor.rangeFieldFormat = body.Read<std::uint8_t>();
    sensor.rangeFieldSupport = body.Read<std::uint8_t>();
    ReadThresholds(body, sensor);
}

/** Reads a whole body, or as much of it as there is; nothing where no sensor comes of it. */
std::shared_ptr<__Temp_sensors> ReadSensor(ByteReader& body, Layout layout) {
    auto sensor = std::make_shared<__Temp_sensors>();
    body.Skip(2); // PLDMTerminusHandle
    sensor->sensorID =
        layout == Layout::OLD ? body.Read<std::uint8_t>() : body.Read<std::uint16_t>();
    sensor->entityType = body.Read<std::uint16_t>();
    sensor->entityInstanceNumber = body.Read<std::uint16_t>();
    sensor->containerID = body.Read<std::uint16_t>();
    sensor->sensorInit = body.Read<std::uint8_t>();
    sensor->IsSensorAuxNameSupported = body.Read<std::uint8_t>();
    sensor->baseUnit = body.Read<std::uint8_t>();
    if (!IsKeptUnit(sensor->baseUnit)) {
        return nullptr;
    }
    sensor->unitModifier = body.Read<std::int8_t>();
    sensor->rateUnit = body.Read<std::uint8_t>();
    body.Skip(4); // OEM and auxiliary unit fields
    sensor->relative = body.Read<std::uint8_t>();
    body.Skip(1); // auxOEMUnitHandle
    sensor->isLinear = body.Read<std::uint8_t>();
    sensor->dataType = body.Read<std::uint8_t>();
    sensor->resolution = decodeReal32(body.Read<std::uint32_t>());
    sensor->offset = decodeReal32(body.Read<std::uint32_t>());
    sensor->accuracy = body.Read<std::uint16_t>();
    sensor->plusTolerance = body.Read<std::uint8_t>();
    sensor->minusTolerance = body.Read<std::uint8_t>();
    const auto width = WidthOfDataSize(sensor->dataType);
    if (!width) {
        return nullptr;
    }
    ReadRanges(body, *width, *sensor);

    sensor->temperature = readingUnavailable;
    if (sensor->IsSensorAuxNameSupported != 0) {
        sensor->auxSensorName = DefaultSensorName(sensor->baseUnit, sensor->sensorID);
    }
    return sensor;
}

} // namespace

void HandleNumericSensorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid) {
    const auto platform = data.supportedTypes.find(PLDM_PLATFORM);
    if (platform == data.supportedTypes.end()) {
        return;
    }
    // An endpoint that speaks several versions gets one sensor for each of them.
    for (const auto& [version, commands] : platform->second) {
        const auto layout = LayoutOfVersion(version);
        if (!layout) {
            continue;
        }
        ByteReader body = BodyOf(record);
        auto sensor = ReadSensor(body, *layout);
        if (IsWhole(eid, body, PDR_NUMERIC_SENSOR) && sensor) {
            AppendBounded(data.numericSensors, std::move(sensor));
        }
    }
}

} // namespace vantric
