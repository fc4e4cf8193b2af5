// SPDX-License-Identifier: Apache-2.0
#include "nicdevice/nic_device.hpp"

#include "common/log.hpp"
#include "common/status.hpp"
#include "modeling/sensor_choice.hpp"

namespace vantric {

NicDevice::NicDevice(const DeviceDetails& details, const std::string& basePath,
                     const BusDoors& doors)
    : Device(details, basePath, doors) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Constructed NicDevice at slot %d\n", slotNumber);
}

void NicDevice::InventoryTheDevice() {
    if (GatherInventory() != STATUS_SUCCESS) {
        GiveUpInventory();
        return;
    }
    ModelControllers();
    FinishInventory();
    i2cMonitorFailures = 0;
}

void NicDevice::ModelControllers() {
    std::uint8_t number = 1;
    for (auto& endpoint : cmds) {
        const Controller controller = ControllerAt(number++);
        for (const auto& sensor : endpoint->ExtractedData().numericSensors) {
            sensor->sensorNeededFor = KindOnNetworkCard(sensor->baseUnit);
        }
        const auto& extractedData = endpoint->GetExtractedData();
        if (endpoint->HasEntityAssociation()) {
            modeling->CreatePDRTree(extractedData, controller);
        } else {
            modeling->ModelWithoutTree(extractedData, controller);
        }
        UpdateControllerInvData(controller);
    }
}

VantricStatus NicDevice::MonitorTheDevice() {
    {
        const auto lock = endpoints.BeginWork();
        std::uint8_t number = 1;
        for (auto& endpoint : cmds) {
            const VantricStatus status = MonitorController(*endpoint, ControllerAt(number++));
            if (status != STATUS_SUCCESS) {
                FailedCycle(status);
                if (!ToleratesMonitorFailure()) {
                    return status;
                }
                ++i2cMonitorFailures;
                return STATUS_SUCCESS;
            }
        }
    }
    return PauseAfterCycle();
}

VantricStatus NicDevice::MonitorController(PLDMCmds& endpoint, const Controller& controller) {
    if (monitorCycles.IsDue()) {
        monitorCycles.Restart();
        RefreshFWVersion(endpoint, FirmwareUse::PUBLISH);
        if (ReadChangedRepository(endpoint)) {
            ModelControllers();
        }
    }
    ReadingMap readings;
    const VantricStatus status = endpoint.GetAllSensorReading(readings);
    PublishReadings(readings, controller);
    if (status != STATUS_SUCCESS) {
        return status;
    }
    if (cmds.size() != 1 || stateSensorCycles.IsDue()) {
        stateSensorCycles.Restart();
        RefreshStateSensors(endpoint, controller);
    }
    stateSensorCycles.Count();
    monitorCycles.Count();
    return status;
}

bool NicDevice::ToleratesMonitorFailure() const {
    return UsesI2C() && i2cMonitorFailures < toleratedFailures;
}

} // namespace vantric
