// SPDX-License-Identifier: Apache-2.0
/** The door to the main thread, and through it to the bus. */
#pragma once

#include "common/log.hpp"
#include "publisher/requests.hpp"

#include <string>

namespace vantric {

/** What became of a post. */
class [[nodiscard]] PostResult {
public:
    /** @param execRet 0, or the error of the channel that didn't take the request */
    explicit PostResult(int execRet) : execRet(execRet) {}

    int ExecRet() const { return execRet; }

    /** Writes a line if the request wasn't taken.
     *  @param what begins the line */
    void LogFailure(LogLevel level, const char* what = "OneWayChannel_Execute") const {
        if (execRet != 0) {
            VANTRIC_LOG(level, "%s ERROR, execRet = %d\n", what, execRet);
        }
    }

private:
    int execRet;
};

/** Has requests carried out on the main thread, in the order in which they were posted.
 *
 * Any thread; no operation waits. The poster learns whether its request was taken, and nothing of
 * what became of it: the failures of the work itself are logged where it is done. */
class Publisher {
public:
    Publisher() = default;
    virtual ~Publisher() = default;
    Publisher(const Publisher&) = delete;
    Publisher& operator=(const Publisher&) = delete;

    /** Creates the object of a numeric sensor. One that exists stays as it is. */
    virtual PostResult InsertSensor(SensorInsertRequest request) = 0;

    /** Writes a reading to the object of a numeric sensor, if there is one. */
    virtual PostResult SetSensorValue(SensorValueRequest request) = 0;

    /** Creates the object of a state sensor. One that exists stays as it is. */
    virtual PostResult InsertStateSensor(StateSensorRequest request) = 0;

    /** Writes states to the object of a state sensor, if there is one. */
    virtual PostResult SetStateSensorValue(StateSensorRequest request) = 0;

    /** Creates the inventory object of a device with FRU data. One that exists stays as it is. */
    virtual PostResult InsertFruInventory(FruInventoryRequest request) = 0;

    /** Creates the inventory object of a device without FRU data. One that exists stays. */
    virtual PostResult InsertPlainInventory(PlainInventoryRequest request) = 0;

    /** Creates the object of a controller. */
    virtual PostResult UpdateControllerInventory(ControllerRequest request) = 0;

    /** Writes the firmware version to all inventory objects of a device. */
    virtual PostResult UpdateFWVersion(FirmwareRequest request) = 0;

    /** Writes the health to all inventory objects of a device. */
    virtual PostResult UpdateDeviceHealthStatus(HealthStatusRequest request) = 0;

    /** Removes the objects of a device. */
    virtual PostResult Clear(ClearRequest request) = 0;

    /** Makes all numbering of sensors begin anew. */
    virtual PostResult ResetNumbering() = 0;
};

/** What the platform tells of the I2C endpoints of a card. */
class UdidReader {
public:
    UdidReader() = default;
    virtual ~UdidReader() = default;
    UdidReader(const UdidReader&) = delete;
    UdidReader& operator=(const UdidReader&) = delete;

    /** The UDID of the endpoint with the bus address; empty if it isn't to be had. Any thread;
     *  blocks for as long as the platform takes to answer. */
    virtual std::string getUDIDPropertyVal(std::uint8_t slot, std::uint8_t busAddress) const = 0;
};

/** What devices are handed of the bus side. Both outlive every device. */
struct BusDoors {
    Publisher& publisher;
    const UdidReader& udids;
};

} // namespace vantric
