#include "accelerator/accelerator.hpp"

#include "accelerator/sensor_choice.hpp"
#include "common/log.hpp"
#include "modeling/virtual_board.hpp"

namespace vantric {

namespace {

constexpr std::uint8_t onlyController = 1;

/** The board's place in the numbering of the slots of its accelerators. */
constexpr std::uint8_t boardSlot = firstAcceleratorSlot - 1;

} // namespace

Accelerator::Accelerator(const DeviceDetails& details, const std::string& basePath,
                         const BusDoors& doors, Sct& sct)
    : Device(details, basePath, doors), sct(sct), isAmdUbb(IsVirtualBoard(details.identity)) {
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
    std::erase_if(data.numericSensors, [this, classify](const auto& sensor) {
        const auto kind = classify(sct, sensor->sensorID, sensor->entityType, sensor->baseUnit);
        sensor->sensorNeededFor = kind.value_or(SENSOR_KIND_NONE);
        return !kind;
    });
}

void Accelerator::CreateVirtualAMDDevices() {
    for (std::uint8_t slot = boardSlot; slot <= lastAcceleratorSlot; ++slot) {
        PlainInventoryRequest request;
        request.slot = slotNumber;
        request.deviceLdid = ldid;
        request.identity = identity;
        request.cpuAffinity = cpuAffinity;
        if (slot == boardSlot) {
            request.objectPath = virtualBoardPath;
            request.resolvedLdid = virtualBoardLdid;
        } else {
            request.objectPath = ObjectPath(slot);
            request.resolvedLdid = VirtualAcceleratorLdid(std::to_string(slot));
        }
        doors.publisher.InsertPlainInventory(std::move(request)).LogFailure(LOG_LEVEL_ERROR);
    }
}

void Accelerator::ModelAccelerator() {
    for (const auto& endpoint : cmds) {
        const auto& extractedData = endpoint->GetExtractedData();
        if (endpoint->HasEntityAssociation()) {
            modeling->CreatePDRTree(extractedData, onlyController);
        } else {
            modeling->ModelWithoutTree(extractedData, onlyController);
        }
    }
}

} // namespace vantric
