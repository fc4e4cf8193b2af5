// SPDX-License-Identifier: Apache-2.0
/** The words of a scenario and the numbers that they stand for. */
#pragma once

#include "scenario/named_number.hpp"

#include <span>

namespace simulator {

/** What a kind of card is to the PCIe table and to the endpoint table. */
struct CardKind {
    std::string_view name;
    std::uint8_t deviceClass;
    std::uint8_t endPointType;
    bool embedded;
    std::string_view ldidPrefix;
};

/** All kinds of card. */
std::span<const CardKind> CardKinds();

/** PLDM entity types (DSP0249). */
std::span<const NamedNumber> EntityTypeNames();
/** Units of numeric sensors (DSP0248, sensorUnits). */
std::span<const NamedNumber> UnitNames();
/** Rates of a unit (DSP0248, rateUnits). */
std::span<const NamedNumber> RateUnitNames();
/** Widths of readings (DSP0248, sensorDataSize). */
std::span<const NamedNumber> DataSizeNames();
/** Formats of thresholds (DSP0248, rangeFieldFormat). */
std::span<const NamedNumber> RangeFormatNames();
/** What a sensor needs at start (DSP0248, sensorInit). */
std::span<const NamedNumber> SensorInitNames();
/** Operational states of a sensor (DSP0248, sensorOperationalState). */
std::span<const NamedNumber> OperationalStateNames();
/** Present states of a numeric sensor (DSP0248, presentState). */
std::span<const NamedNumber> PresentStateNames();
/** State sets (DSP0249). */
std::span<const NamedNumber> StateSetNames();
/** Fields of a general FRU record (DSP0257). */
std::span<const NamedNumber> FruFieldNames();
/** Character encodings of a FRU record (DSP0257). */
std::span<const NamedNumber> FruEncodingNames();
/** Types of a firmware version string (DSP0267). */
std::span<const NamedNumber> StringTypeNames();

} // namespace simulator
