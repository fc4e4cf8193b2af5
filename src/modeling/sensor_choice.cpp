// SPDX-License-Identifier: Apache-2.0
#include "modeling/sensor_choice.hpp"

#include "vocabulary/entity_types.hpp"

namespace vantric {

namespace {

SensorKind KindByUnit(std::uint8_t baseUnit, SensorKind ofTemperature) {
    switch (baseUnit) {
    case BASE_UNIT_DEGREES_C:
        return ofTemperature;
    case BASE_UNIT_WATTS:
        return SENSOR_KIND_PROBE;
    default:
        return SENSOR_KIND_NONE;
    }
}

bool IsTemperatureOfAccelerator(std::uint8_t baseUnit) {
    return baseUnit == BASE_UNIT_DEGREES_C || baseUnit == BASE_UNIT_DEGREES_F;
}

/** The board itself and what stands on it besides the accelerators. */
bool IsPartOfBoard(std::uint16_t entityType) {
    return entityType == ENTITY_ADD_IN_CARD || entityType == ENTITY_PROCESSOR_MEMORY_MODULE ||
           entityType == ENTITY_FPGA || entityType == ENTITY_OEM;
}

std::optional<SensorKind> KindIf(bool wanted, SensorKind kind) {
    return wanted ? std::optional(kind) : std::nullopt;
}

} // namespace

SensorKind KindOnNetworkCard(std::uint8_t baseUnit) {
    return KindByUnit(baseUnit, SENSOR_KIND_THERMAL_PROBE);
}

SensorKind KindOnMemory(std::uint8_t baseUnit) {
    return KindByUnit(baseUnit, SENSOR_KIND_THERMAL);
}

std::optional<SensorKind> ClassifyNumericSensor(const IsInTable& isInTable, std::uint16_t sensorId,
                                                std::uint16_t entityType, std::uint8_t baseUnit) {
    if (IsTemperatureOfAccelerator(baseUnit)) {
        return KindIf(isInTable(sensorId),
                      IsLogical(entityType) ? SENSOR_KIND_THERMAL : SENSOR_KIND_THERMAL_PROBE);
    }
    return KindIf(baseUnit == BASE_UNIT_WATTS, SENSOR_KIND_PROBE);
}

std::optional<SensorKind> ClassifyUbbNumericSensor(const IsInTable& isInTable,
                                                   std::uint16_t sensorId, std::uint16_t entityType,
                                                   std::uint8_t baseUnit) {
    if (IsTemperatureOfAccelerator(baseUnit)) {
        const auto kind = ClassifyNumericSensor(isInTable, sensorId, entityType, baseUnit);
        return kind ? kind : KindIf(IsPartOfBoard(entityType), SENSOR_KIND_PROBE);
    }
    return KindIf(baseUnit == BASE_UNIT_WATTS &&
                      (IsPartOfBoard(entityType) || entityType == ENTITY_LOGICAL_ACCELERATOR),
                  SENSOR_KIND_PROBE);
}

bool IsUbbStateSensorWanted(std::uint16_t entityType) {
    return entityType == ENTITY_ADD_IN_CARD || entityType == ENTITY_LOGICAL_ACCELERATOR;
}

} // namespace vantric
