/** From what an endpoint told to the names that its sensors have on D-Bus. */
#pragma once

#include "dbus_handler/requests.hpp"
#include "pldm_cmds/records.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vantric {

/** What modeling needs to know of its device. */
struct ModelingParameters {
    std::uint8_t slot = 0;
    std::string ldid;          ///< such as NIC.Slot.3
    std::string inventoryBase; ///< base path of the device's class, ends in a slash
    bool multipleControllers = false;
    PciIdentity identity;
    std::uint8_t cpuAffinity = 0;
};

/** Names the sensors of one device and posts them, and later their readings, to the main thread.
 *
 * Owned by its device and called on the device's inventory and monitor thread only; it has no lock.
 * It creates no D-Bus object itself, and nothing that it posts points back into it. A post that the
 * channel doesn't take is logged and lost. */
class Modeling {
public:
    explicit Modeling(ModelingParameters parameters);

    /** Removes the device's objects, see DeleteDBUSPaths. */
    ~Modeling();

    Modeling(const Modeling&) = delete;
    Modeling& operator=(const Modeling&) = delete;

    /** Publishes the sensors of an endpoint that tells nothing about its entities.
     *  @param controller number of the endpoint's controller, from 1 */
    void ModelWithoutTree(const std::shared_ptr<__extractedData>& extractedData,
                          std::uint8_t controller);

    /** Sends a reading to the object of its sensor.
     *  @param value in whole units of the sensor, or readingUnavailable */
    void UpdateSensorTempValue(std::uint16_t sensorId, std::int32_t value, std::uint8_t sensorKind,
                               std::uint8_t controller);

    /** Removes the device's objects of the given mode from the bus, and then gives the bus's
     *  clients 2 s to notice: the caller is blocked for that time. */
    void DeleteDBUSPaths(ClearMode mode);

private:
    using NumericSensors = std::vector<std::shared_ptr<__Temp_sensors>>;

    void AttachNumericSensors(const NumericSensors& sensors, bool flat, std::uint8_t controller);
    void UpdateDbus(const __Sensor& sensor, bool flat, std::uint8_t controller);
    void UpdateDbusForNumericSensor(const __Sensor& sensor, std::uint8_t slot,
                                    const std::string& sensorPath, const std::string& resolvedLdid,
                                    const std::string& inventoryPath, const std::string& name,
                                    std::uint16_t instance);
    std::string SensorPath(const __Sensor& sensor, const std::string& tag) const;
    std::string InventoryRoot() const;

    ModelingParameters device;
};

} // namespace vantric
