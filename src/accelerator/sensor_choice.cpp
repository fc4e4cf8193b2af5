#include "accelerator/sensor_choice.hpp"

#include "accelerator/sct.hpp"
#include "vocabulary/entity_types.hpp"
#include "vocabulary/reading.hpp"

namespace vantric {

namespace {

constexpr std::uint16_t logicalEntity = 0x8000;

constexpr std::uint16_t processorMemoryModule = 79;
constexpr std::uint16_t fpga = 148;
constexpr std::uint16_t oemEntity = 24576;

/** The board itself and what stands on it besides the accelerators. */
bool IsPartOfBoard(std::uint16_t entityType) {
    return entityType == ENTITY_ADD_IN_CARD || entityType == processorMemoryModule ||
           entityType == fpga || entityType == oemEntity;
}

std::optional<SensorKind> ClassifyTemperature(const Sct& sct, std::uint16_t sensorId,
                                              std::uint16_t entityType) {
    if (!sct.IsSensorInSCT(sensorId)) {
        return std::nullopt;
    }
    return (entityType & logicalEntity) != 0 ? SENSOR_KIND_THERMAL : SENSOR_KIND_THERMAL_PROBE;
}

std::optional<SensorKind> ProbeIf(bool wanted) {
    return wanted ? std::optional(SENSOR_KIND_PROBE) : std::nullopt;
}

} // namespace

std::optional<SensorKind> ClassifyNumericSensor(const Sct& sct, std::uint16_t sensorId,
                                                std::uint16_t entityType, std::uint8_t baseUnit) {
    switch (baseUnit) {
    case BASE_UNIT_DEGREES_C:
    case BASE_UNIT_DEGREES_F:
        return ClassifyTemperature(sct, sensorId, entityType);
    case BASE_UNIT_WATTS:
        return SENSOR_KIND_PROBE;
    default:
        return std::nullopt;
    }
}

std::optional<SensorKind> ClassifyUbbNumericSensor(const Sct& sct, std::uint16_t sensorId,
                                                   std::uint16_t entityType,
                                                   std::uint8_t baseUnit) {
    switch (baseUnit) {
    case BASE_UNIT_DEGREES_C:
    case BASE_UNIT_DEGREES_F:
        if (const auto kind = ClassifyTemperature(sct, sensorId, entityType)) {
            return kind;
        }
        return ProbeIf(IsPartOfBoard(entityType));
    case BASE_UNIT_WATTS:
        return ProbeIf(IsPartOfBoard(entityType) || entityType == ENTITY_LOGICAL_ACCELERATOR);
    default:
        return std::nullopt;
    }
}

bool IsUbbStateSensorWanted(std::uint16_t entityType) {
    return entityType == ENTITY_ADD_IN_CARD || entityType == ENTITY_LOGICAL_ACCELERATOR;
}

} // namespace vantric
