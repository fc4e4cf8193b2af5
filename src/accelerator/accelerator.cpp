// SPDX-License-Identifier: Apache-2.0
#include "accelerator/accelerator.hpp"

#include "common/log.hpp"
#include "modeling/accelerator_board.hpp"
#include "modeling/sensor_choice.hpp"

namespace vantric {

Accelerator::Accelerator(const DeviceDetails& details, const std::string& basePath,
                         const BusDoors& doors, Sct& sct)
    : Device(details, basePath, doors), sct(sct),
      isAmdUbb(accelerator_board::IsBoard(details.identity)) {
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Constructed Accelerator at slot %d\n", slotNumber);
}

void Accelerator::InventoryTheDevice() {
    sct.ReadOnce(identity);
    if (GatherInventory() != STATUS_SUCCESS) {
        GiveUpInventory();
        return;
    }
    FilterSensors();
    ModelAccelerator();
    FinishInventory("Success");
}

void Accelerator::FilterSensors() {
    if (isAmdUbb) {
        CreateVirtualAMDDevices();
    } else {
        GroupSensors();
    }
    for (const auto& endpoint : cmds) {
        auto& data = endpoint->ExtractedData();
        FilterNumericSensors(data);
        if (isAmdUbb) {
            std::erase_if(data.stateSensors, [](const auto& sensor) {
                return !IsUbbStateSensorWanted(sensor->entityType);
            });
        }
    }
}

void Accelerator::FilterNumericSensors(__extractedData& data) {
    const auto classify = isAmdUbb ? ClassifyUbbNumericSensor : ClassifyNumericSensor;
    const auto isInTable = [this](std::uint16_t sensorId) { return sct.IsSensorInSCT(sensorId); };
    std::erase_if(data.numericSensors, [&](const auto& sensor) {
        const auto kind =
            classify(isInTable, sensor->sensorID, sensor->entityType, sensor->baseUnit);
        sensor->sensorNeededFor = kind.value_or(SENSOR_KIND_NONE);
        return !kind;
    });
}

void Accelerator::CreateVirtualAMDDevices() {
    for (const auto& [objectLdid, path] : accelerator_board::InventoryObjects()) {
        PlainInventoryRequest request;
        request.slot = slotNumber;
        request.deviceLdid = ldid;
        request.objectPath = path;
        request.identity = identity;
        request.cpuAffinity = cpuAffinity;
        request.resolvedLdid = objectLdid.Text();
        doors.publisher.InsertPlainInventory(std::move(request)).LogFailure(LOG_LEVEL_ERROR);
    }
}

void Accelerator::ModelAccelerator() {
    for (const auto& endpoint : cmds) {
        const auto& extractedData = endpoint->GetExtractedData();
        if (endpoint->HasEntityAssociation()) {
            modeling->CreatePDRTree(extractedData, ControllerAt(1));
        } else {
            modeling->ModelWithoutTree(extractedData, ControllerAt(1));
        }
    }
}

} // namespace vantric
