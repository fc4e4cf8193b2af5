// SPDX-License-Identifier: Apache-2.0
/** The records that travel to the main thread, one for each operation of a Publisher. */
#pragma once

#include "records/sensor.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vantric {

/** Creates the object of a numeric sensor. */
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

/** Writes a reading to the object of a numeric sensor. */
struct SensorValueRequest {
    double value = 0; ///< 2147483647.0 means that the sensor failed
    std::string deviceLdid;
    std::string pathText; ///< all or a tail of the object path, in normalised form
    std::uint8_t slot = 0;
    std::uint8_t sensorKind = SENSOR_KIND_NONE;
    std::uint8_t controller = 0;
};

/** The LDID that the object of a request stands for: the resolved one if there is one, else the
 * device's. */
template <typename Request>
const std::string& EffectiveLdid(const Request& request) {
    return request.resolvedLdid.empty() ? request.deviceLdid : request.resolvedLdid;
}

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

/** Creates the inventory object of a device with FRU data. */
struct FruInventoryRequest {
    FruFields fields;
    std::string deviceLdid; ///< key in the store
    std::string objectPath; ///< not yet normalised
    std::uint8_t slot = 0;
};

/** Creates the inventory object of a device without FRU data. */
struct PlainInventoryRequest {
    std::string firmwareVersion;
    std::uint16_t slot = 0; ///< only the low 8 bits count
    std::string deviceLdid;
    std::string objectPath;
    PciIdentity identity;
    std::uint16_t cpuAffinity = 0;
    std::string resolvedLdid; ///< empty except on a virtual board
};

/** Creates the object of a controller. */
struct ControllerRequest {
    std::string objectPath;
    std::string deviceLdid;
    std::uint16_t slot = 0;
    std::uint8_t cpuAffinity = 0;
};

/** Writes the firmware version to a device's inventory objects. */
struct FirmwareRequest {
    std::string deviceLdid;
    std::string version;
};

/** Creates the object of a state sensor or writes its states. The three lists run in step, one
 * entry for each member. */
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

/** Writes a device's health to its inventory objects. */
struct HealthStatusRequest {
    std::string deviceLdid;
    std::uint8_t severity = 0; ///< as healthSeverity of the vocabulary has it
};

/** Which objects of a device a ClearRequest removes. */
enum ClearMode : std::uint8_t {
    CLEAR_SENSORS = 1, ///< numeric and state sensors
    CLEAR_ALL = 2,     ///< inventory as well
};

/** Removes the objects of a device. */
struct ClearRequest {
    std::string deviceLdid;
    std::uint8_t slot = 0;
    ClearMode mode = CLEAR_ALL;
};

} // namespace vantric
