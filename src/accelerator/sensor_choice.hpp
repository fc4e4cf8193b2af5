/** Which sensors of an accelerator are wanted, and how they are published. */
#pragma once

#include "records/sensor.hpp"

#include <cstdint>
#include <optional>

namespace vantric {

class Sct;

/** The kind of a numeric sensor of an accelerator card; nothing for one that isn't wanted. A
 *  temperature counts if the SCT names it; a power sensor always does.
 *  @param baseUnit PLDM base unit (DSP0248) */
std::optional<SensorKind> ClassifyNumericSensor(const Sct& sct, std::uint16_t sensorId,
                                                std::uint16_t entityType, std::uint8_t baseUnit);

/** The same for the endpoint that speaks for a whole board: sensors of the board's own parts count
 *  as well, and only those of known parts do. */
std::optional<SensorKind> ClassifyUbbNumericSensor(const Sct& sct, std::uint16_t sensorId,
                                                   std::uint16_t entityType, std::uint8_t baseUnit);

/** Whether a state sensor of such a board is wanted: those of the board and of its accelerators. */
bool IsUbbStateSensorWanted(std::uint16_t entityType);

} // namespace vantric
