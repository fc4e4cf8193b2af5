// SPDX-License-Identifier: Apache-2.0
/** Described sensors. */
#pragma once

#include "scenario/entity.hpp"
#include "scenario/sensor_value.hpp"

#include <optional>

namespace simulator {

/** A name in one language. */
struct LocalName {
    std::string language; /**< tag such as "en" */
    std::string text;     /**< UTF-8, or the bytes of the record */
    bool encoded = false; /**< the text stands in the record as it is */
};

/** In the sensor's unit; what isn't there isn't supported. */
struct Thresholds {
    std::optional<double> warningHigh;
    std::optional<double> criticalHigh;
    std::optional<double> fatalHigh;
    std::optional<double> warningLow;
    std::optional<double> criticalLow;
    std::optional<double> fatalLow;
};

/** Which record describes a numeric sensor: the full one, the compact one, or the full one of
 *  early versions, whose sensor id has one byte. */
enum class SensorForm { Full, Compact, ShortId };

struct NumericSensor {
    std::uint16_t id = 0;
    SensorForm form = SensorForm::Full;
    EntityId entity;
    std::uint8_t unit = 2;
    std::int8_t modifier = 0; /**< power of ten of the unit */
    std::uint8_t rateUnit = 0;
    std::uint8_t dataSize = 3;
    std::uint8_t rangeFormat = 3;
    float resolution = 1.0F;
    float offset = 0.0F;
    float hysteresis = 0.0F;
    std::uint8_t init = 0;
    Thresholds thresholds;
    std::optional<std::uint8_t> supportedThresholds; /**< instead of the bits that follow */
    std::vector<LocalName> names;
    Motion value = 0.0;
    std::uint8_t operationalState = 0;
    std::optional<std::uint8_t> presentState; /**< instead of the one that follows from the value */
    std::optional<std::uint8_t> readingSize;  /**< what a reading calls its own size */
};

/** One member of a state sensor. */
struct StateMember {
    std::uint16_t stateSet = 1;
    std::vector<std::uint8_t> possibleStates;
    std::uint8_t state = 1;
    std::uint8_t operationalState = 0;
    std::vector<LocalName> names;
};

struct StateSensor {
    std::uint16_t id = 0;
    EntityId entity;
    std::uint8_t init = 0;
    std::vector<StateMember> members;
};

} // namespace simulator
