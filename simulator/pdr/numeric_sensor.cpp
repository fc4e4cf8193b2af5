// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"

#include "quantity.hpp"

#include <cmath>

namespace simulator {

namespace {

using simulator_link::PayloadWriter;

constexpr std::size_t longestCompactName = 255;

/** A threshold stands in the record in the sensor's unit and modifier, without resolution and
 *  offset. */
double InUnit(double value, const NumericSensor& sensor) {
    return value / std::pow(10.0, sensor.modifier);
}

std::uint8_t SupportedThresholds(const NumericSensor& sensor) {
    const auto& thresholds = sensor.thresholds;
    const std::optional<double>* const bits[] = {&thresholds.warningHigh, &thresholds.criticalHigh,
                                                 &thresholds.fatalHigh,   &thresholds.warningLow,
                                                 &thresholds.criticalLow, &thresholds.fatalLow};
    std::uint8_t field = 0;
    for (std::size_t i = 0; i < std::size(bits); ++i) {
        field |= static_cast<std::uint8_t>((bits[i]->has_value() ? 1 : 0) << i);
    }
    return sensor.supportedThresholds.value_or(field);
}

void WriteRange(PayloadWriter& writer, const NumericSensor& sensor) {
    const auto format = FormatOfRangeField(sensor.rangeFormat);
    const auto& thresholds = sensor.thresholds;
    const std::optional<double> none;
    const std::optional<double>* const slots[] = {&none,
                                                  &none,
                                                  &none,
                                                  &thresholds.warningHigh,
                                                  &thresholds.warningLow,
                                                  &thresholds.criticalHigh,
                                                  &thresholds.criticalLow,
                                                  &thresholds.fatalHigh,
                                                  &thresholds.fatalLow};
    for (const auto* slot : slots) {
        const double value = slot->has_value() ? InUnit(**slot, sensor) : 0.0;
        writer.WriteUnsigned(BitsOf(value, format), WidthOf(format));
    }
}

/** rangeFieldSupport has bits for critical and fatal; warnings have none. */
std::uint8_t RangeSupport(const Thresholds& thresholds) {
    const std::optional<double>* const bits[] = {&thresholds.criticalHigh, &thresholds.criticalLow,
                                                 &thresholds.fatalHigh, &thresholds.fatalLow};
    std::uint8_t field = 0;
    for (std::size_t i = 0; i < std::size(bits); ++i) {
        field |= static_cast<std::uint8_t>((bits[i]->has_value() ? 1 : 0) << (i + 3));
    }
    return field;
}

Bytes FullBody(const NumericSensor& sensor) {
    const auto format = FormatOfDataSize(sensor.dataSize);
    const auto width = WidthOf(format);
    PayloadWriter writer;
    writer.Write(terminusHandle);
    writer.WriteUnsigned(sensor.id, sensor.form == SensorForm::ShortId ? 1 : 2);
    WriteEntity(writer, sensor.entity);
    writer.Write(sensor.init)
        .Write(static_cast<std::uint8_t>(sensor.names.empty() ? 0 : 1))
        .Write(sensor.unit)
        .Write(sensor.modifier)
        .Write(sensor.rateUnit)
        .WriteUnsigned(0, 4)                 // OEM unit handle and auxiliary unit
        .WriteUnsigned(0, 2)                 // relation, auxiliary OEM unit handle
        .Write(static_cast<std::uint8_t>(1)) // linear
        .Write(sensor.dataSize)
        .Write(sensor.resolution)
        .Write(sensor.offset)
        .WriteUnsigned(0, 4) // accuracy and tolerances
        .WriteUnsigned(BitsOf(static_cast<double>(sensor.hysteresis), format), width)
        .Write(SupportedThresholds(sensor))
        .Write(static_cast<std::uint8_t>(0)) // volatility
        .Write(0.0F)                         // state transition interval
        .Write(1.0F)                         // update interval, seconds
        .WriteUnsigned(BitsOf(HUGE_VAL, format), width)
        .WriteUnsigned(BitsOf(-HUGE_VAL, format), width)
        .Write(sensor.rangeFormat)
        .Write(RangeSupport(sensor.thresholds));
    WriteRange(writer, sensor);
    return writer.Finish();
}

Bytes CompactBody(const NumericSensor& sensor) {
    const auto& thresholds = sensor.thresholds;
    const std::optional<double>* const slots[] = {&thresholds.warningHigh,  &thresholds.warningLow,
                                                  &thresholds.criticalHigh, &thresholds.criticalLow,
                                                  &thresholds.fatalHigh,    &thresholds.fatalLow};
    std::string name = sensor.names.empty() ? "" : sensor.names.front().text;
    name.resize(std::min(name.size(), longestCompactName));
    std::uint8_t support = 0;
    for (std::size_t i = 0; i < std::size(slots); ++i) {
        support |= static_cast<std::uint8_t>((slots[i]->has_value() ? 1 : 0) << i);
    }
    PayloadWriter writer;
    writer.Write(terminusHandle).Write(sensor.id);
    WriteEntity(writer, sensor.entity);
    writer.Write(static_cast<std::uint8_t>(name.size()))
        .Write(sensor.unit)
        .Write(sensor.modifier)
        .Write(sensor.rateUnit)
        .Write(support);
    for (const auto* slot : slots) {
        const double value = slot->has_value() ? InUnit(**slot, sensor) : 0.0;
        writer.WriteUnsigned(BitsOf(value, NumberFormat::Sint32), 4);
    }
    return writer.Write(std::string_view(name)).Finish();
}

} // namespace

Pdr EncodeNumericSensor(const NumericSensor& sensor) {
    if (sensor.form == SensorForm::Compact) {
        return {PdrType::CompactNumericSensor, CompactBody(sensor)};
    }
    return {PdrType::NumericSensor, FullBody(sensor)};
}

} // namespace simulator
