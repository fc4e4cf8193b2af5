// SPDX-License-Identifier: Apache-2.0
/** Compact Numeric Sensor PDR, type 21 (DSP0248). */
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "pldm_cmds/sensor_name.hpp"

#include <algorithm>

namespace vantric {

namespace {

constexpr std::size_t maxNameLength = 96;
constexpr std::uint8_t allThresholds = 255;

/** The text up to the first NUL, the longest length or the end of the record. */
std::string ReadName(ByteReader& body) {
    const auto area = body.Take(std::min(maxNameLength, body.Remaining()));
    const auto end = std::ranges::find(area, std::uint8_t{0});
    return {area.begin(), end};
}

} // namespace

void HandleCompactNumericSensorPDR(std::span<const std::uint8_t> record, __extractedData& data,
                                   int eid) {
    ByteReader body = BodyOf(record);
    auto sensor = std::make_shared<__Temp_sensors>();
    body.Skip(2); // PLDMTerminusHandle
    sensor->sensorID = body.Read<std::uint16_t>();
    sensor->entityType = body.Read<std::uint16_t>();
    sensor->entityInstanceNumber = body.Read<std::uint16_t>();
    sensor->containerID = body.Read<std::uint16_t>();
    const auto nameLength = body.Read<std::uint8_t>();
    sensor->baseUnit = body.Read<std::uint8_t>();
    sensor->unitModifier = body.Read<std::int8_t>();
    sensor->rateUnit = body.Read<std::uint8_t>();
    sensor->rangeFieldSupport = body.Read<std::uint8_t>();
    sensor->upperThresholdWarning = body.Read<std::int32_t>();
    sensor->lowerThresholdWarning = body.Read<std::int32_t>();
    sensor->upperThresholdCritical = body.Read<std::int32_t>();
    sensor->lowerThresholdCritical = body.Read<std::int32_t>();
    sensor->upperThresholdFatal = body.Read<std::int32_t>();
    sensor->lowerThresholdFatal = body.Read<std::int32_t>();
    sensor->auxSensorName =
        nameLength == 0 ? DefaultSensorName(sensor->baseUnit, sensor->sensorID) : ReadName(body);
    sensor->supportedThresholds = allThresholds;
    sensor->resolution = 1.0F;

    if (IsWhole(eid, body, PDR_COMPACT_NUMERIC_SENSOR) && IsKeptUnit(sensor->baseUnit)) {
        AppendBounded(data.numericSensors, std::move(sensor));
    }
}

} // namespace vantric
