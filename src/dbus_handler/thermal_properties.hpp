/** How a numeric sensor looks to the thermal subsystem. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "dbus_handler/sensor_numbering.hpp"
#include "publisher/requests.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** What kind of device a sensor sits on, as far as its thermal type goes. */
enum DeviceClass : std::uint8_t {
    DEVICE_CLASS_NETWORK = 0,
    DEVICE_CLASS_CXL = 1,
    DEVICE_CLASS_ACCELERATOR = 2,
    DEVICE_CLASS_EMBEDDED_NIC = 3,
};

/** Values of sensorCategories: what a sensor becomes if its card turns out to be an OCP card. */
enum SensorCategory : std::uint32_t {
    SENSOR_CATEGORY_NONE = 0,
    SENSOR_CATEGORY_ASIC = 1,
    SENSOR_CATEGORY_OPTICS = 2,
};

/** DeviceType of the sensors on an OCP card. */
inline constexpr auto ocpDeviceType = "OCP3";

/** A row of the thermal typing. */
struct ThermalType {
    bindings::ThermalSensor::dev_types sensorType;
    SensorNumbering::Counter counter; ///< where its instance comes from
    SensorCategory category = SENSOR_CATEGORY_NONE;
    const char* deviceType = nullptr; ///< null: the property keeps its default
};

/** Returns the thermal type of a sensor.
 *  @param ocpCard  whether the card is an OCP card; counts on network devices only */
ThermalType ThermalTypeOf(DeviceClass deviceClass, const __Sensor& sensor,
                          const PciIdentity& identity, bool ocpCard);

/** Returns the bag of the thermal interface. */
PropertyBag<bindings::ThermalSensor> MakeThermalBag(std::uint8_t slot, DeviceClass deviceClass,
                                                    const ThermalType& type,
                                                    std::uint16_t instance);

} // namespace vantric
