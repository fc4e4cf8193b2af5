/** The process's presence on the system bus. */
#pragma once

#include "dbus_handler/compositions.hpp"
#include "dbus_handler/find_object.hpp"
#include "dbus_handler/loop_exit.hpp"
#include "dbus_handler/sensor_numbering.hpp"
#include "dbus_handler/thermal_properties.hpp"
#include "publisher/publisher.hpp"

#include <sdbusplus/bus.hpp>
#include <sdbusplus/bus/match.hpp>
#include <sdbusplus/server/manager.hpp>
#include <sdeventplus/event.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vantric {

/** Turns the sensors of a card that turned out to be an OCP card into OCP sensors. */
struct RetypeRequest {
    std::uint8_t slot = 0;
};

/** Makes all numbering of sensors begin anew; takes nothing along. */
struct NumberingResetRequest {};

/** Owns the connection, the service name, the object managers and every published object.
 *
 * Objects are created, written and removed on the main thread alone, by the functions of
 * handlers.hpp; the operations below are their work. What any thread may call says so. */
class DBusHandler final : public UdidReader {
public:
    /** Returns the one instance. The first call, on the main thread before others exist, connects
     *  to the bus, takes the name and makes the channel's requests run on the thread's event loop.
     *  What fails of that is logged, and the instance does without. */
    static DBusHandler& instance();

    ~DBusHandler() override = default;
    DBusHandler(const DBusHandler&) = delete;
    DBusHandler& operator=(const DBusHandler&) = delete;

    /** Starts the thread that listens to the platform's signals and runs the main event loop.
     *  Returns when the loop ends, which it does when either of the two connections to the bus is
     *  lost: with a status for exit() that isn't 0. */
    int Run();

    /** Body of the thread "dbusEventHandler": sets dbusReady once both signal matches stand, and
     *  serves them on a connection of its own. Returns only if that fails. */
    void RegisterForDBUSEvents();

    /** Asks for the model of a card whose sensors were typed before its FRU was known, and posts
     *  the change of an OCP card's sensors to the main thread. Blocks while it asks; any thread. */
    void UpdateSensorType(std::uint8_t slot);

    /** Asks the entity manager for a property of the card in the slot. Returns an empty string if
     *  it isn't to be had. Blocks for as long as the bus's time-out at worst; any thread. */
    static std::string getFRUPropertyVal(std::uint8_t slot, const std::string& name);

    /** Tells whether the model of the card in the slot says OCP; blocks, like getFRUPropertyVal. */
    static bool IsOcpCard(std::uint8_t slot);

    /** Asks the address service for the UDID of the I2C endpoint with the bus address. Returns an
     *  empty string if it isn't to be had. Blocks for as long as the bus's time-out at worst; any
     *  thread. */
    std::string getUDIDPropertyVal(std::uint8_t slot, std::uint8_t busAddress) const override;

    // What follows is the work of the request handlers, on the main thread.

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
    /** Removes the objects of the device; all for a mode that is none. */
    void Clear(const ClearRequest& request);
    /** Turns the sensors of the OCP card in the slot into OCP sensors. */
    void RetypeSensors(const RetypeRequest& request);
    /** Puts the numbering back to its first values. */
    void ForgetNumbering(const NumberingResetRequest& request);

private:
    DBusHandler();

    template <typename Composition, typename Construct>
    void createDbusObj(ObjectStore<Composition>& store, const std::string& ldid, std::string path,
                       Construct construct);
    template <typename Composition>
    void CreateSensor(ObjectStore<Composition>& store, const SensorInsertRequest& request);
    /** Creates a sensor for thermal control and probes. If the card's FRU comes up meanwhile, its
     *  model is asked for again. */
    void CreateThermalProbe(const SensorInsertRequest& request);
    std::uint32_t FruEventsOf(std::uint8_t slot);
    PropertyBags BuildSensorProperties(const SensorInsertRequest& request, const std::string& path);
    PropertyBag<bindings::ThermalSensor> BuildThermalProperties(const SensorInsertRequest& request,
                                                                const std::string& path,
                                                                DeviceClass deviceClass);
    template <typename Write>
    void WriteInventories(const std::string& ldid, Write write);

    sd_bus* connection = nullptr; ///< what bus holds, for libsystemd's own calls; may be null
    std::shared_ptr<sdbusplus::bus_t> bus;
    sdeventplus::Event event;
    sdbusplus::server::manager_t inventoryManager;
    sdbusplus::server::manager_t sensorsManager;

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
    /** Object path to SensorCategory; belongs to the main thread, like numbering. */
    std::map<std::string, std::uint32_t> sensorCategories;

    /** Belongs to "dbusEventHandler". */
    std::vector<std::unique_ptr<sdbusplus::bus::match_t>> signalMatches;

    SensorNumbering numbering;
    LoopExit loopExit;
};

} // namespace vantric
