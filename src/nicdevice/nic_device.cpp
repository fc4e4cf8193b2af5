#include "nicdevice/nic_device.hpp"

#include "common/log.hpp"
#include "common/status.hpp"

namespace vantric {

namespace {

constexpr std::uint8_t toleratedFailures = 5;

/** How a network card's sensor of this unit is published. */
SensorKind KindOf(std::uint8_t baseUnit) {
    switch (baseUnit) {
    case BASE_UNIT_DEGREES_C:
        return SENSOR_KIND_THERMAL_PROBE;
    case BASE_UNIT_WATTS:
        return SENSOR_KIND_PROBE;
    default:
        return SENSOR_KIND_NONE;
    }
}

} // namespace

NicDevice::NicDevice(const DeviceDetails& details, const std::string& basePath)
    : Device(details, basePath) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Constructed NicDevice at slot %d\n", slotNumber);
}

void NicDevice::InventoryTheDevice() {
    if (GatherInventory() != 0) {
        GiveUpInventory();
        return;
    }
    ModelControllers();
    FinishInventory();
    i2cMonitorFailures = 0;
}

void NicDevice::ModelControllers() {
    std::uint8_t controller = 1;
    for (auto& endpoint : cmds) {
        for (const auto& sensor : endpoint->ExtractedData().numericSensors) {
            sensor->sensorNeededFor = KindOf(sensor->baseUnit);
        }
        const auto& extractedData = endpoint->GetExtractedData();
        if (endpoint->HasEntityAssociation()) {
            modeling->CreatePDRTree(extractedData, controller);
        } else {
            modeling->ModelWithoutTree(extractedData, controller);
        }
        UpdateControllerInvData(controller);
        ++controller;
    }
}

int NicDevice::MonitorTheDevice() {
    {
        const auto lock = BeginWork();
        std::uint8_t controller = 1;
        for (auto& endpoint : cmds) {
            const int status = MonitorController(*endpoint, controller);
            if (status != 0) {
                FailedCycle(status);
                return ToleratesMonitorFailure() ? ToInt(VantricStatus::SUCCESS) : status;
            }
            ++controller;
        }
    }
    return PauseAfterCycle();
}

int NicDevice::MonitorController(PLDMCmds& endpoint, std::uint8_t controller) {
    if (PeriodicCheckIsDue()) {
        RefreshFWVersion(endpoint, true);
        if (RepositoryHasChanged(endpoint)) {
            ModelControllers();
        }
    }
    ReadingMap readings;
    const int status = endpoint.GetAllSensorReading(readings);
    PublishReadings(readings, controller);
    if (status != 0) {
        return status;
    }
    if (cmds.size() != 1 || StateSensorsAreDue()) {
        RefreshStateSensors(endpoint, controller);
    }
    ++stateSensorCycles;
    ++monitorCycles;
    return status;
}

bool NicDevice::ToleratesMonitorFailure() {
    if (!useI2C || i2cMonitorFailures >= toleratedFailures) {
        return false;
    }
    ++i2cMonitorFailures;
    return true;
}

} // namespace vantric
