// SPDX-License-Identifier: Apache-2.0
#include "machine/live_sensor.hpp"

#include "quantity.hpp"

namespace simulator {

namespace {

// Operational states and present states of DSP0248.
constexpr std::uint8_t enabled = 0;
constexpr std::uint8_t disabled = 1;
constexpr std::uint8_t unavailable = 2;
constexpr std::uint8_t presentUnknown = 0;
constexpr std::uint8_t presentNormal = 1;

constexpr std::uint8_t initEnable = 2;

} // namespace

LiveNumericSensor::LiveNumericSensor(const NumericSensor& description, std::uint32_t seed)
    : description(description), value(description.value, seed),
      operationalState(description.operationalState), presentState(description.presentState) {
    // Such a sensor is off until the requester enables it.
    if (description.init == initEnable && operationalState == enabled) {
        operationalState = disabled;
    }
}

Bytes LiveNumericSensor::Read(Seconds now) {
    const double real = value.At(now);
    const std::uint8_t present = PresentState(real);
    if (present != lastPresent) {
        previousPresent = lastPresent;
        lastPresent = present;
    }
    const auto size = description.readingSize.value_or(description.dataSize);
    const auto format = FormatOfDataSize(size);
    const double raw =
        RawOf(real, description.resolution, description.offset, description.modifier);
    constexpr std::uint8_t noEvents = 0;
    return simulator_link::PayloadWriter()
        .Write(size)
        .Write(operationalState)
        .Write(noEvents)
        .Write(present)
        .Write(previousPresent)
        .Write(present) // the event state is the present one: there is no hysteresis
        .WriteUnsigned(BitsOf(raw, format), WidthOf(format))
        .Finish();
}

void LiveNumericSensor::Enable(std::uint8_t state) {
    if (operationalState <= unavailable) {
        operationalState = state;
    }
}

void LiveNumericSensor::SetState(std::uint8_t operational, std::optional<std::uint8_t> present) {
    operationalState = operational;
    presentState = present;
}

std::uint8_t LiveNumericSensor::PresentState(double real) const {
    if (presentState) {
        return *presentState;
    }
    if (operationalState != enabled) {
        return presentUnknown;
    }
    const auto& thresholds = description.thresholds;
    const struct {
        const std::optional<double>& threshold;
        bool high;
        std::uint8_t state;
    } rules[] = {
        {thresholds.fatalHigh, true, 10},   {thresholds.fatalLow, false, 7},
        {thresholds.criticalHigh, true, 9}, {thresholds.criticalLow, false, 6},
        {thresholds.warningHigh, true, 8},  {thresholds.warningLow, false, 5},
    };
    for (const auto& rule : rules) {
        if (rule.threshold && (rule.high ? real >= *rule.threshold : real <= *rule.threshold)) {
            return rule.state;
        }
    }
    return presentNormal;
}

LiveStateSensor::LiveStateSensor(const StateSensor& description) {
    for (const auto& member : description.members) {
        members.push_back({member.operationalState, member.state, member.state});
    }
}

Bytes LiveStateSensor::Read() {
    simulator_link::PayloadWriter writer;
    writer.Write(static_cast<std::uint8_t>(members.size()));
    for (const auto& member : members) {
        writer.Write(member.operational)
            .Write(member.present)
            .Write(member.previous)
            .Write(member.present);
    }
    return writer.Finish();
}

void LiveStateSensor::SetState(std::size_t member, std::uint8_t state) {
    members[member].previous = members[member].present;
    members[member].present = state;
}

void LiveStateSensor::SetOperationalState(std::uint8_t state) {
    for (auto& member : members) {
        member.operational = state;
    }
}

} // namespace simulator
