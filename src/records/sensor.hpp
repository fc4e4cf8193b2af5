// SPDX-License-Identifier: Apache-2.0
/** What is published of a device and of its numeric sensors. */
#pragma once

#include "vocabulary/reading.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** Which interfaces a numeric sensor is published with. */
enum SensorKind : std::uint8_t {
    SENSOR_KIND_NONE = 0,
    SENSOR_KIND_THERMAL_PROBE = 1,
    SENSOR_KIND_THERMAL = 2,
    SENSOR_KIND_PROBE = 3,
};

/** PCI identity of a device. */
struct PciIdentity {
    std::uint16_t vendorId = 0;
    std::uint16_t subVendorId = 0;
    std::uint16_t subDeviceId = 0;
    std::uint16_t deviceId = 0;
};

/** What modeling carries of one numeric sensor. */
struct __Sensor {
    std::uint8_t sensorKind = SENSOR_KIND_NONE;
    std::uint8_t baseUnit = 0;
    std::uint16_t sensorId = 0;
    std::uint16_t entityInstance = 0;
    std::uint16_t entityType = 0;
    std::int32_t temperature = 0; ///< the reading, in whole units of baseUnit
    std::int32_t thresholdReadError = 0;
    // Thresholds as the PDR has them, unconverted; 0 means not given.
    std::int64_t upperFatal = 0;
    std::int64_t upperCritical = 0;
    std::int64_t upperWarning = 0;
    std::int64_t normalMax = 0;
    std::int64_t normalMin = 0;
    std::int64_t lowerFatal = 0;
    std::int64_t lowerCritical = 0;
    std::int64_t lowerWarning = 0;
    std::string name; ///< the sensor's own name from the device; may be empty
};

} // namespace vantric
