// SPDX-License-Identifier: Apache-2.0
/** From what an endpoint told to the names that its sensors have on D-Bus. */
#pragma once

#include "modeling/entity_tree.hpp"
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
     *  A second controller goes without a tree: its ports and sensors are numbered after those of
     *  the first, whose tree and objects stay. Any other removes the sensor objects of the device
     *  (DeleteDBUSPaths), and builds and publishes anew.
     *  @param extractedData what the endpoint told; nullptr is logged and changes nothing. Numbers
     *         of its state sensors' entities are brought in line with the paths */
    void CreatePDRTree(const std::shared_ptr<__extractedData>& extractedData,
                       const Controller& controller);

    /** Publishes the sensors of an endpoint that tells nothing of its entities. Removes nothing. */
    void ModelWithoutTree(const std::shared_ptr<__extractedData>& extractedData,
                          const Controller& controller);

    /** Sends a reading to the object of its sensor.
     *  @param value in whole units of the sensor, or readingUnavailable */
    void UpdateSensorTempValue(std::uint16_t sensorId, std::int32_t value, std::uint8_t sensorKind,
                               const Controller& controller);

    /** Sends the states of state sensors to their objects, as texts, and the device's health where
     *  one of them tells it. */
    void UpdateStateSensorValue(const StateChangeMap& readings, const Controller& controller);

    /** Sends the device's health to its inventory objects.
     *  @param text a state of the "Health State" set; any other text means unknown */
    void UpdateDeviceHealthStatus(const std::string& text);

    /** Removes the device's objects of the given mode from the bus, and then gives the bus's
     *  clients 2 s to notice: the caller is blocked for that time. */
    void DeleteDBUSPaths(ClearMode mode);

private:
    using NumericSensors = std::vector<std::shared_ptr<__Temp_sensors>>;
    using StateSensors = std::vector<std::shared_ptr<_StateSensors>>;

    // With a tree: sensors are hung on its nodes, and a walk publishes what hangs there.
    void AttachNumericSensors(const NumericSensors& sensors);
    void AttachStateSensors(const StateSensors& stateSensors);
    void WalkTree(PDRTree& node, ControllerTag tag);
    void UpdateDbus(PDRTree& node, ControllerTag tag);
    void NumericSensorHandler(const __Sensor& sensor, PDRTree& node, ControllerTag tag,
                              const std::string& inventoryPath);
    void StateSensorHandler(_StateSensors& sensor, ControllerTag tag,
                            const std::string& inventoryPath);

    // Without one: a sensor belongs to its controller as a whole.
    void ModelSecondController(const __extractedData& extractedData, const Controller& controller);
    SensorInsertRequest PlaceOnController(__Sensor sensor, const Controller& controller) const;
    StateSensorRequest DescribeWithSetNames(const _StateSensors& sensor) const;
    void UpdateDbus(StateSensorRequest request, const Controller& controller,
                    const std::string& entityPiece);

    /** What a request holds of a sensor wherever it belongs. */
    SensorInsertRequest Describe(const __Sensor& sensor) const;
    StateSensorRequest Describe(const _StateSensors& sensor) const;
    void UpdateDbusForNumericSensor(SensorInsertRequest request);
    void UpdateDbusForStateSensor(StateSensorRequest request);

    void UpdateThermalSensorForAllLDIDs(std::int32_t value, const Controller& controller);

    /** Whether an entity type has a word; writes a line if it has none. */
    static bool LogUnlessSupported(std::uint16_t entityType);
    std::string InventoryRoot() const;

    const ModelingParameters device;
    Publisher& publisher;
    EntityTree tree;
    std::uint8_t portCount = 0; ///< port nodes of the tree; wraps
};

/** The part of a sensor's record that modeling carries, as it stands in the record. */
__Sensor ReduceSensor(const __Temp_sensors& record);

} // namespace vantric
