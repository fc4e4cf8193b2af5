/** The records that travel through the channel to the main thread.
 *
 * A poster fills one by value and hands it to PostRequest; the handler of the same subject owns it
 * from then on. */
#pragma once

#include "common/reading.hpp"

#include <cstdint>
#include <string>
#include <vector>

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

/** Creates the object of a numeric sensor: dbusDataInsert. */
struct SensorInsertRequest {
    __Sensor sensor;
    std::string objectPath;    ///< full path, not yet normalised
    std::string deviceLdid;    ///< key in the store
    std::string inventoryPath; ///< inventory object that the sensor belongs to
    std::string entityName;    ///< such as "networkcontroller_1"
    std::string resolvedLdid;  ///< empty, or the LDID that the sensor stands for on a virtual board
    std::uint8_t slot = 0;
    PciIdentity identity;
    std::uint8_t cpuAffinity = 0;
};

/** Writes a reading to the object of a numeric sensor: dbusSetSensorValue. */
struct SensorValueRequest {
    double value = 0; ///< 2147483647.0 means that the sensor failed
    std::string deviceLdid;
    std::string pathText; ///< all or a tail of the object path, in normalised form
    std::uint8_t slot = 0;
    std::uint8_t sensorKind = SENSOR_KIND_NONE;
    std::uint8_t controller = 0;
};

/** What a device tells of itself besides its sensors. The strings are as the card gave them. */
struct FruFields {
    PciIdentity identity;
    std::uint16_t cpuAffinity = 0;
    std::string chassisType;
    std::string model;
    std::string partNumber;
    std::string serialNumber;
    std::string manufacturer;
    std::string manufactureDate;
    std::string vendor;
    std::string name;
    std::string sku;
    std::string version;
    std::string assetTag;
    std::string description;
    std::string ecLevel;
    std::string other;
    std::string iana; ///< decimal; anything else is published as 0
    std::string firmwareVersion;
};

/** Creates the inventory object of a device with FRU data: dbusFruDataInsert. */
struct FruInventoryRequest {
    FruFields fields;
    std::string deviceLdid; ///< key in the store
    std::string objectPath; ///< not yet normalised
    std::uint8_t slot = 0;
};

/** Creates the inventory object of a device without FRU data: dbusInvDataInsert. */
struct PlainInventoryRequest {
    std::string firmwareVersion;
    std::uint16_t slot = 0; ///< only the low 8 bits count
    std::string deviceLdid;
    std::string objectPath;
    PciIdentity identity;
    std::uint16_t cpuAffinity = 0;
    std::string resolvedLdid; ///< empty except on a virtual board
};

/** Creates the object of a controller: dbusControllerData. */
struct ControllerRequest {
    std::string objectPath;
    std::string deviceLdid;
    std::uint16_t slot = 0;
    std::uint8_t cpuAffinity = 0;
};

/** Writes the firmware version to a device's inventory objects: dbusFWDataUpdate. */
struct FirmwareRequest {
    std::string deviceLdid;
    std::string version;
};

/** Creates the object of a state sensor (dbusStateSensorDataInsert) or writes its states
 *  (dbusSetStateSensorValue). The three lists run in step, one entry for each member. */
struct StateSensorRequest {
    std::uint8_t slot = 0;
    std::uint8_t controller = 0;
    std::uint16_t entityType = 0;
    std::uint16_t entityInstance = 0;
    std::uint16_t sensorId = 0;
    std::uint8_t memberCount = 0; ///< creation: how long the lists should be
    std::vector<std::string> memberNames;
    std::vector<std::string> stateSetNames; ///< empty: "Unavailable" for each member
    std::vector<std::string> valueTexts;    ///< empty: "Unavailable" for each member
    std::string statePath;                  ///< creation: full path, not yet normalised
    std::string deviceLdid;                 ///< key in the store
    std::string secondLdid;                 ///< creation: the LDID that the sensor stands for
    std::string searchKey;                  ///< update: all or a tail of the object path
};

/** Writes a device's health to its inventory objects: dbusUpdateDeviceHealthStatus. */
struct HealthStatusRequest {
    std::string deviceLdid;
    std::uint8_t severity = 0; ///< as healthSeverity of the vocabulary has it
};

/** Which objects of a device a ClearRequest removes. */
enum ClearMode : std::uint8_t {
    CLEAR_SENSORS = 1, ///< numeric and state sensors
    CLEAR_ALL = 2,     ///< inventory as well
};

/** Removes the objects of a device: dbusClear. */
struct ClearRequest {
    std::string deviceLdid;
    std::uint8_t slot = 0;
    std::uint8_t mode = CLEAR_ALL;
};

} // namespace vantric
