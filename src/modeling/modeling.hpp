/** From what an endpoint told to the names that its sensors have on D-Bus. */
#pragma once

#include "modeling/entity_tree.hpp"
#include "modeling/sensor_place.hpp"
#include "publisher/publisher.hpp"
#include "records/extracted_data.hpp"
#include "records/readings.hpp"
#include "vocabulary/sensor_tag.hpp"

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
 * channel doesn't take is logged and lost: the next inventory or poll makes another. */
class Modeling {
public:
    /** @param publisher outlives this */
    Modeling(ModelingParameters parameters, Publisher& publisher);

    /** Frees the tree and removes the device's objects, see DeleteDBUSPaths. */
    ~Modeling();

    Modeling(const Modeling&) = delete;
    Modeling& operator=(const Modeling&) = delete;

    /** Publishes the sensors of an endpoint that tells of its entities.
     *
     *  Controller 2 goes without a tree: its ports and sensors are numbered behind those of
     *  controller 1, whose tree and objects stay. Any other number removes the sensor objects of
     *  the device (DeleteDBUSPaths), and builds and publishes anew.
     *  @param extractedData what the endpoint told; nullptr is logged and changes nothing. Numbers
     *         of its state sensors' entities are brought in line with the paths */
    void CreatePDRTree(const std::shared_ptr<__extractedData>& extractedData,
                       std::uint8_t controller);

    /** Publishes the sensors of an endpoint that tells nothing of its entities. Removes nothing.
     *  @param controller number of the endpoint's controller, from 1 */
    void ModelWithoutTree(const std::shared_ptr<__extractedData>& extractedData,
                          std::uint8_t controller);

    /** Sends a reading to the object of its sensor.
     *  @param value in whole units of the sensor, or readingUnavailable */
    void UpdateSensorTempValue(std::uint16_t sensorId, std::int32_t value, std::uint8_t sensorKind,
                               std::uint8_t controller);

    /** Sends the states of state sensors to their objects, as texts, and the device's health where
     *  one of them tells it. */
    void UpdateStateSensorValue(const StateChangeMap& readings, std::uint8_t controller);

    /** Sends the device's health to its inventory objects.
     *  @param text a state of the "Health State" set; any other text means unknown */
    void UpdateDeviceHealthStatus(const std::string& text);

    /** Removes the device's objects of the given mode from the bus, and then gives the bus's
     *  clients 2 s to notice: the caller is blocked for that time. */
    void DeleteDBUSPaths(ClearMode mode);

private:
    using NumericSensors = std::vector<std::shared_ptr<__Temp_sensors>>;
    using StateSensors = std::vector<std::shared_ptr<_StateSensors>>;

    // Both hang sensors on the tree, or publish them at once where they come flat, that is without
    // any tree, or from controller 2.
    void AttachNumericSensors(const NumericSensors& sensors, bool flat, std::uint8_t controller);
    void AttachStateSensors(const StateSensors& stateSensors, bool flat, std::uint8_t controller);
    void ModelSecondController(const __extractedData& extractedData);

    void WalkTree();
    std::string EntityPath(const PDRTree& node) const;
    std::string InventoryPath(const PDRTree& node) const;
    /** Publishes what hangs on a node. */
    void UpdateDbus(PDRTree& node);
    void StateSensorHandler(_StateSensors& sensor, const std::string& inventoryPath);
    void NumericSensorHandler(const __Sensor& sensor, PDRTree& node,
                              const std::string& inventoryPath);
    void UbbNumericSensorHandler(const __Sensor& sensor, std::uint8_t entityType,
                                 std::uint8_t instance);

    /** Publishes a sensor that has no node. */
    void UpdateDbus(__Sensor sensor, bool flat, std::uint8_t controller);
    /** Publishes a state sensor; works out its path if it has none. */
    void UpdateDbus(StateSensorRequest request, bool flat, std::uint8_t controller);
    void PlaceWithoutNode(StateSensorRequest& request, bool flat, std::uint8_t controller);

    void UpdateDbusForNumericSensor(const __Sensor& sensor, const SensorPlace& place,
                                    std::uint8_t instance);
    void PostNumericSensor(const __Sensor& sensor, const SensorPlace& place,
                           std::uint16_t instance);
    void UpdateThermalSensorForAllLDIDs(std::uint16_t sensorId, std::int32_t value,
                                        std::uint8_t controller);

    std::string InventoryRoot() const;
    ControllerTag Tag(std::uint8_t controller) const;

    const ModelingParameters device;
    Publisher& publisher;
    EntityTree tree;
    // Numbers given last. Each is a byte and wraps.
    std::uint8_t portCount = 0;      ///< port nodes of the tree
    std::uint8_t powerCount = 0;     ///< power sensors, from controller 2's first behind portCount
    std::uint8_t tempCount = 0;      ///< temperature sensors, likewise
    std::uint8_t connectorCount = 0; ///< connectors, likewise
};

} // namespace vantric
