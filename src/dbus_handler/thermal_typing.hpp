// SPDX-License-Identifier: Apache-2.0
/** How numeric sensors look to thermal control. */
#pragma once

#include "dbus_handler/property_bags.hpp"
#include "publisher/requests.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>

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

/** The next numbers of the sensors of each type, all devices together. */
struct InstanceCounters {
    std::uint16_t nicAsicInstance = 151;
    std::uint16_t nicOpticsInstance = 151;
    std::uint16_t ndcAsicInstance = 151;
    std::uint16_t ndcOpticsInstance = 151;
    std::uint16_t nicOtherInstance = 151;
    std::uint16_t cxlCompInstance = 0;
    std::uint16_t cxlCtrlInstance = 0;
    std::uint16_t cxlSpdInstance = 0;
    std::uint16_t cxlDramInstance = 0;
    std::uint16_t cxlOtherInstance = 0;
    std::uint16_t gpuCompInstance = 0;
    std::uint16_t gpuOtherInstance = 0;
};

/** A row of the thermal typing. */
struct ThermalType {
    bindings::ThermalSensor::dev_types sensorType;
    std::uint16_t InstanceCounters::*counter; ///< where its instance comes from
    SensorCategory category = SENSOR_CATEGORY_NONE;
    const char* deviceType = nullptr; ///< null: the property keeps its default
};

/** Returns which numbering and naming of thermal sensors the device follows. An embedded NIC is
 *  told by its LDID, everything else by its inventory path. */
DeviceClass DeviceClassOf(const std::string& inventoryPath, const std::string& effectiveLdid);

/** Returns the thermal type of a sensor.
 *  @param ocpCard  whether the card is an OCP card; counts on network devices only */
ThermalType ThermalTypeOf(DeviceClass deviceClass, const __Sensor& sensor,
                          const PciIdentity& identity, bool ocpCard);

/** Types the sensors of all devices and numbers them. It remembers what each was given, so that a
 *  sensor that goes and comes back keeps its number. Belongs to the main thread. */
class ThermalTyping {
public:
    /** Returns the bag of the thermal interface of a new sensor. For a network device it asks for
     *  the card's model, which blocks like getFRUPropertyVal.
     *  @param path  the object's path in its final form */
    PropertyBag<bindings::ThermalSensor> BuildThermalProperties(const SensorInsertRequest& request,
                                                                const std::string& path);

    /** Makes the sensor at path one of an OCP card, with a new number, unless it is or its type
     *  doesn't depend on that. */
    void MakeOcp(const std::string& path, bindings::ThermalSensor& object, const std::string& ldid);

    /** Returns the number of an accelerator's probe in "System Board Proc Accel" names.
     *  @param key  the Key of the probe */
    std::uint8_t ProcAccelNumberOf(const std::string& key);

private:
    InstanceCounters counters;
    std::uint16_t procAccelNumber = 1;
    std::unordered_map<std::string, std::uint16_t> instanceNumbers; ///< by object path
    std::unordered_map<std::string, std::uint8_t> procAccelNumbers; ///< by probe key
    std::map<std::string, std::uint32_t> sensorCategories;          ///< by object path
};

} // namespace vantric
