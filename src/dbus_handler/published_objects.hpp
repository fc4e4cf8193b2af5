// SPDX-License-Identifier: Apache-2.0
/** What the process publishes. */
#pragma once

#include "dbus_handler/compositions.hpp"
#include "dbus_handler/find_object.hpp"
#include "dbus_handler/thermal_typing.hpp"
#include "publisher/requests.hpp"

#include <sdbusplus/bus.hpp>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace vantric {

/** Turns the sensors of a card that turned out to be an OCP card into OCP sensors. */
struct RetypeRequest {
    std::uint8_t slot = 0;
};

/** Makes all numbering of sensors begin anew; takes nothing along. */
struct NumberingResetRequest {};

/** Every published object, and the operations that create, write and remove them.
 *
 * The operations are the work of the functions of handlers.hpp, on the main thread alone; what any
 * thread may call says so. */
class PublishedObjects {
public:
    /** @param connection  what bus holds; may be null, and then nothing is published */
    PublishedObjects(sd_bus* connection, std::shared_ptr<sdbusplus::bus_t> bus)
        : connection(connection), bus(std::move(bus)) {}

    /** Creates the object of a numeric sensor, unless it exists. */
    void InsertSensor(const SensorInsertRequest& request);
    /** Writes a reading and what follows from it. */
    void SetSensorValue(const SensorValueRequest& request);
    /** Creates the object of a state sensor, unless it exists. */
    void InsertStateSensor(const StateSensorRequest& request);
    /** Replaces the details of a state sensor. */
    void SetStateSensorValue(const StateSensorRequest& request);
    /** Creates the inventory object of a device with FRU data, unless it exists. */
    void InsertFruInventory(const FruInventoryRequest& request);
    /** Creates the inventory object of a device without FRU data, unless it exists. */
    void InsertPlainInventory(const PlainInventoryRequest& request);
    /** Creates the object of a controller. */
    void UpdateControllerInventory(const ControllerRequest& request);
    /** Writes the firmware version to all inventory objects of the device. */
    void updateFWVersion(const FirmwareRequest& request);
    /** Writes the severity to all inventory objects of the device. */
    void UpdateDeviceHealthStatus(const HealthStatusRequest& request);
    /** Removes the objects of the device. */
    void Clear(const ClearRequest& request);
    /** Turns the sensors of the OCP card in the slot into OCP sensors. */
    void RetypeSensors(const RetypeRequest& request);
    /** Puts the numbering back to its first values. */
    void ForgetNumbering(const NumberingResetRequest& request);

    /** Asks for the model of a card whose sensors were typed before its FRU was known, and posts
     *  the change of an OCP card's sensors to the main thread. Blocks while it asks; any thread. */
    void UpdateSensorType(std::uint8_t slot);

private:
    template <typename Composition, typename Build>
    void createDbusObj(ObjectStore<Composition>& store, const std::string& ldid, std::string path,
                       Build build);
    template <typename Composition>
    void CreateSensor(ObjectStore<Composition>& store, const SensorInsertRequest& request);
    /** Creates a sensor for thermal control and probes. If the card's FRU comes up meanwhile, its
     *  model is asked for again. */
    void CreateThermalProbe(const SensorInsertRequest& request);
    std::uint32_t FruEventsOf(std::uint8_t slot);
    template <typename Write>
    void WriteInventories(const std::string& ldid, Write write);

    sd_bus* const connection;
    const std::shared_ptr<sdbusplus::bus_t> bus;

    /** Guards the stores. They change on the main thread only, under the lock; so the main thread
     *  looks things up without it. */
    std::mutex objectsMutex;
    ObjectStore<Thermal_Probe_Interfaces> thermalProbeObjects;
    ObjectStore<ProbeObjInterface> probeObjects;
    ObjectStore<ThermalInterface> thermalObjects;
    ObjectStore<StateSensorDbusInterface> stateSensorObjects;
    ObjectStore<InventoryDbusInterface> inventoryObjects;
    ObjectStore<InventoryWithFRUDbusInterface> fruInventoryObjects;
    ObjectStore<ControllerDbusInterface> controllerObjects;
    ObjectStore<AccInvDbusInterface> acceleratorObjects;
    /** FRU events heard, by slot; objectsMutex. */
    std::map<std::uint8_t, std::uint32_t> fruEvents;

    ThermalTyping thermalTyping; ///< belongs to the main thread
};

} // namespace vantric
