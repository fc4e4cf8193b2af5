// SPDX-License-Identifier: Apache-2.0
#include "memorydevice/memory_device.hpp"

#include "common/log.hpp"
#include "common/status.hpp"
#include "modeling/paths.hpp"
#include "modeling/sensor_choice.hpp"

#include <utility>

namespace vantric {

namespace {

/** What is posted of a record. The temperature is left out: an object begins without a reading,
 *  and the mark for "not available", which the record holds before its first poll, would raise the
 *  high alarms. */
__Sensor MakeSensor(const __Temp_sensors& record) {
    __Sensor sensor = ReduceSensor(record);
    sensor.temperature = 0;
    return sensor;
}

} // namespace

MemoryDevice::MemoryDevice(const DeviceDetails& details, const std::string& basePath,
                           const BusDoors& doors)
    : Device(details, basePath, doors) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Constructed MemoryDevice at slot %d\n", slotNumber);
}

void MemoryDevice::InventoryTheDevice() {
    if (fwUpdateInProgress) {
        PauseAfterCycle();
        return; // the inventory is still what comes next
    }
    if (GatherInventory() != STATUS_SUCCESS) {
        GiveUpInventory();
        return;
    }
    ModelSensors();
    FinishInventory();
}

void MemoryDevice::ModelSensors() {
    if (cmds.empty()) {
        return;
    }
    for (const auto& record : cmds.front()->ExtractedData().numericSensors) {
        record->sensorNeededFor = KindOnMemory(record->baseUnit);
    }
    for (const auto& record : cmds.front()->GetExtractedData()->numericSensors) {
        UpdateDbusForTempSensor(MakeSensor(*record));
    }
}

void MemoryDevice::UpdateDbusForTempSensor(const __Sensor& sensor) {
    const std::string& word = EntityWord(sensor.entityType);
    if (word.empty()) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid/Not supported EntityType: %d\n", sensor.entityType);
        return;
    }
    SensorInsertRequest request;
    request.sensor = sensor;
    request.objectPath = SensorPath(sensor, ldid, CONTROLLER_UNTOLD);
    request.deviceLdid = ldid;
    request.inventoryPath = ObjectPath();
    request.entityName = word;
    request.slot = static_cast<std::uint8_t>(slotNumber);
    doors.publisher.InsertSensor(std::move(request)).LogFailure(LOG_LEVEL_TRACE);
}

VantricStatus MemoryDevice::MonitorTheDevice() {
    if (fwUpdateInProgress) {
        return PauseAfterCycle();
    }
    {
        const auto lock = endpoints.BeginWork();
        for (const auto& endpoint : cmds) {
            const VantricStatus status = MonitorEndpoint(*endpoint);
            if (status != STATUS_SUCCESS) {
                return FailedCycle(status);
            }
        }
    }
    return PauseAfterCycle();
}

VantricStatus MemoryDevice::MonitorEndpoint(PLDMCmds& endpoint) {
    if (monitorCycles.IsDue()) {
        monitorCycles.Restart();
        if (ReadChangedRepository(endpoint)) {
            ModelSensors();
        }
    }
    monitorCycles.Count();
    ReadingMap readings;
    const VantricStatus status = endpoint.GetAllSensorReading(readings);
    PublishReadings(readings, ControllerAt(1));
    return status;
}

} // namespace vantric
