/** The functions that carry requests out: what ChannelPublisher hands to the channel, each with a
 *  record of its own type.
 *
 * Each runs on the main thread and owns the record. It returns 0, or -1 for a request that it can't
 * begin with; the failures of the work itself are logged and don't change the result. */
#pragma once

namespace vantric {

/** Creates the object of a numeric sensor from a SensorInsertRequest. One that exists stays as it
 *  is; so does the bus if the kind of sensor isn't published. -1: the request has no path. */
int dbusDataInsert(void* context, void* requestData, unsigned long requestSize);

/** Writes the reading of a SensorValueRequest to its object, if there is one. */
int dbusSetSensorValue(void* context, void* requestData, unsigned long requestSize);

/** Creates the object of a state sensor from a StateSensorRequest. One that exists stays as it is.
 *  -1: the request has no path. */
int dbusStateSensorDataInsert(void* context, void* requestData, unsigned long requestSize);

/** Writes the states of a StateSensorRequest to its object, if there is one. */
int dbusSetStateSensorValue(void* context, void* requestData, unsigned long requestSize);

/** Writes the severity of a HealthStatusRequest to all inventory objects of the device. */
int dbusUpdateDeviceHealthStatus(void* context, void* requestData, unsigned long requestSize);

/** Creates the inventory object of a device without FRU data from a PlainInventoryRequest. */
int dbusInvDataInsert(void* context, void* requestData, unsigned long requestSize);

/** Creates the inventory object of a device with FRU data from a FruInventoryRequest. */
int dbusFruDataInsert(void* context, void* requestData, unsigned long requestSize);

/** Creates the object of a controller from a ControllerRequest. */
int dbusControllerData(void* context, void* requestData, unsigned long requestSize);

/** Writes the version of a FirmwareRequest to all inventory objects of the device. */
int dbusFWDataUpdate(void* context, void* requestData, unsigned long requestSize);

/** Removes the objects of a device as the ClearRequest says. */
int dbusClear(void* context, void* requestData, unsigned long requestSize);

/** Takes nothing along. */
struct NumberingResetRequest {};

/** Makes all numbering of sensors begin anew, for a NumberingResetRequest. */
int dbusResetNumbering(void* context, void* requestData, unsigned long requestSize);

} // namespace vantric
