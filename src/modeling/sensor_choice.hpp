// SPDX-License-Identifier: Apache-2.0
/** Which numeric and state sensors are shown of each class of cards, and as what. */
#pragma once

#include "records/sensor.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace vantric {

/** How a network card's sensor is shown.
 *  @param baseUnit PLDM base unit (DSP0248), here and below */
SensorKind KindOnNetworkCard(std::uint8_t baseUnit);

/** How a sensor of CXL memory is shown. */
SensorKind KindOnMemory(std::uint8_t baseUnit);

/** Whether the platform's table names a sensor, by its id, as one of those that count. */
using IsInTable = std::function<bool(std::uint16_t)>;

/** How a sensor of an accelerator card is shown; nothing for one that isn't wanted at all. A
 *  temperature counts if the table names it; a power sensor always does. */
std::optional<SensorKind> ClassifyNumericSensor(const IsInTable& isInTable, std::uint16_t sensorId,
                                                std::uint16_t entityType, std::uint8_t baseUnit);

/** The same for the endpoint that speaks for a whole board: sensors of the board's own parts count
 *  as well, and only those of known parts do. */
std::optional<SensorKind> ClassifyUbbNumericSensor(const IsInTable& isInTable,
                                                   std::uint16_t sensorId, std::uint16_t entityType,
                                                   std::uint8_t baseUnit);

/** Whether a state sensor of such a board is wanted: those of the board and of its accelerators. */
bool IsUbbStateSensorWanted(std::uint16_t entityType);

} // namespace vantric
