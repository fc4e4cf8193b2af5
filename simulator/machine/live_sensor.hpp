// SPDX-License-Identifier: Apache-2.0
/** Sensors that are read. */
#pragma once

#include "machine/moving_value.hpp"
#include "pdr/record.hpp"

namespace simulator {

/** A numeric sensor with its state. */
class LiveNumericSensor {
public:
    LiveNumericSensor(const NumericSensor& description, std::uint32_t seed);

    /** The fields of a reading as GetSensorReading gives them, from sensorDataSize on. */
    Bytes Read(Seconds now);

    /** Enables or disables; a sensor in another state than these keeps it. */
    void Enable(std::uint8_t operationalState);

    /** Puts it into any state; without a present state, that follows from the value again. */
    void SetState(std::uint8_t operational, std::optional<std::uint8_t> present);

    /** The thresholds from which the present state follows. */
    void SetThresholds(const Thresholds& thresholds) { description.thresholds = thresholds; }

    /** The value in the sensor's unit, and what makes it stand still or move. */
    MovingValue& Value() { return value; }

private:
    std::uint8_t PresentState(double real) const;

    NumericSensor description;
    MovingValue value;
    std::uint8_t operationalState;
    std::optional<std::uint8_t> presentState;
    std::uint8_t lastPresent = 0;
    std::uint8_t previousPresent = 0;
};

/** A state sensor with its state. */
class LiveStateSensor {
public:
    explicit LiveStateSensor(const StateSensor& description);

    /** The fields of a reading as GetStateSensorReadings gives them, from the count on. */
    Bytes Read();

    std::size_t MemberCount() const { return members.size(); }
    /** member counts from 0 and must exist. */
    void SetState(std::size_t member, std::uint8_t state);
    void SetOperationalState(std::uint8_t state);

private:
    struct Member {
        std::uint8_t operational;
        std::uint8_t present;
        std::uint8_t previous;
    };
    std::vector<Member> members;
};

} // namespace simulator
