// SPDX-License-Identifier: Apache-2.0
/** The road of an endpoint's sensors to their objects. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "modeling/paths.hpp"
#include "modeling/second_controller.hpp"
#include "vocabulary/entity_types.hpp"
#include "vocabulary/timing.hpp"

#include <utility>

namespace vantric {

Modeling::Modeling(ModelingParameters parameters, Publisher& publisher)
    : device(std::move(parameters)), publisher(publisher) {}

Modeling::~Modeling() {
    try {
        tree.FreeTree();
        DeleteDBUSPaths(CLEAR_ALL);
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Unknown error in Modeling destructor\n");
    }
}

void Modeling::CreatePDRTree(const std::shared_ptr<__extractedData>& extractedData,
                             const Controller& controller) {
    if (!extractedData) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Extracted data is null\n");
        return;
    }
    if (controller.IsSecond()) {
        ModelSecondController(*extractedData, controller);
        return;
    }
    DeleteDBUSPaths(CLEAR_SENSORS);
    tree.FreeTree();
    portCount = 0;
    if (!BuildTree(tree, extractedData->entityAssociations) || tree.Root() == nullptr) {
        return;
    }
    AttachNumericSensors(extractedData->numericSensors);
    AttachStateSensors(extractedData->stateSensors);
    WalkTree(*tree.Root(), controller.tag);
}

void Modeling::ModelWithoutTree(const std::shared_ptr<__extractedData>& extractedData,
                                const Controller& controller) {
    for (const auto& record : extractedData->numericSensors) {
        __Sensor sensor = ReduceSensor(*record);
        sensor.entityInstance = 0;
        UpdateDbusForNumericSensor(PlaceOnController(std::move(sensor), controller));
    }
    for (const auto& sensor : extractedData->stateSensors) {
        if (LogUnlessSupported(sensor->entityType)) {
            StateSensorRequest request = DescribeWithSetNames(*sensor);
            request.entityInstance = 0;
            UpdateDbus(std::move(request), controller, {});
        }
    }
}

void Modeling::ModelSecondController(const __extractedData& extractedData,
                                     const Controller& controller) {
    SecondControllerNumbers numbers(portCount);
    for (const auto& record : extractedData.numericSensors) {
        SensorInsertRequest request = PlaceOnController(ReduceSensor(*record), controller);
        numbers.Number(request);
        UpdateDbusForNumericSensor(std::move(request));
    }
    for (const auto& sensor : extractedData.stateSensors) {
        if (LogUnlessSupported(sensor->entityType)) {
            StateSensorRequest request = DescribeWithSetNames(*sensor);
            const std::string entityPiece = numbers.Number(request);
            UpdateDbus(std::move(request), controller, entityPiece);
        }
    }
}

SensorInsertRequest Modeling::PlaceOnController(__Sensor sensor,
                                                const Controller& controller) const {
    sensor.entityInstance = InstanceOnController(sensor, controller);
    SensorInsertRequest request = Describe(sensor);
    request.objectPath = SensorPath(sensor, device.ldid, controller.tag);
    request.inventoryPath = InventoryRoot() + ControllerPiece(controller);
    request.entityName = EntityWord(ENTITY_NETWORK_CONTROLLER);
    return request;
}

void Modeling::UpdateDbus(StateSensorRequest request, const Controller& controller,
                          const std::string& entityPiece) {
    request.statePath = InventoryRoot() + PieceWithoutNode(request.entityType, controller) +
                        entityPiece + StateSensorTail(controller.tag, request.sensorId);
    UpdateDbusForStateSensor(std::move(request));
}

SensorInsertRequest Modeling::Describe(const __Sensor& sensor) const {
    SensorInsertRequest request;
    request.sensor = sensor;
    request.sensor.thresholdReadError = 0;
    request.deviceLdid = device.ldid;
    request.slot = device.slot;
    request.identity = device.identity;
    request.cpuAffinity = device.cpuAffinity;
    return request;
}

StateSensorRequest Modeling::Describe(const _StateSensors& sensor) const {
    StateSensorRequest request;
    request.slot = device.slot;
    request.entityType = sensor.entityType;
    request.entityInstance = sensor.entityInstanceNumber;
    request.sensorId = sensor.sensorId;
    request.memberCount = sensor.compositeSensorCount;
    for (const auto& member : sensor.compositeSensors) {
        request.memberNames.push_back(member.sensorName);
    }
    request.deviceLdid = device.ldid;
    return request;
}

StateSensorRequest Modeling::DescribeWithSetNames(const _StateSensors& sensor) const {
    StateSensorRequest request = Describe(sensor);
    for (const auto& member : sensor.compositeSensors) {
        request.stateSetNames.push_back(member.stateSetName);
    }
    return request;
}

void Modeling::UpdateDbusForNumericSensor(SensorInsertRequest request) {
    publisher.InsertSensor(std::move(request)).LogFailure(LOG_LEVEL_TRACE);
}

void Modeling::UpdateDbusForStateSensor(StateSensorRequest request) {
    if (request.entityType == ENTITY_NETWORK_CONTROLLER ||
        request.entityType == ENTITY_ADD_IN_CARD || request.entityType == ENTITY_ACCELERATOR) {
        request.entityInstance = 0;
    }
    publisher.InsertStateSensor(std::move(request)).LogFailure(LOG_LEVEL_TRACE);
}

void Modeling::DeleteDBUSPaths(ClearMode mode) {
    const int result = publisher.Clear({device.ldid, device.slot, mode}).ExecRet();
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "DeleteDBUSPaths ERROR for slot = %d, execRet = %d\n",
                    device.slot, result);
    } else {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "DeleteDBUSPaths SUCCESS for slot = %d, execRet = %d\n",
                    device.slot, result);
    }
    Pause(removalPause);
}

bool Modeling::LogUnlessSupported(std::uint16_t entityType) {
    const bool supported = !EntityWord(entityType).empty();
    if (!supported) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid/Not supported EntityType: %d\n", entityType);
    }
    return supported;
}

std::string Modeling::InventoryRoot() const {
    return device.inventoryBase + std::to_string(device.slot);
}

__Sensor ReduceSensor(const __Temp_sensors& record) {
    return {.sensorKind = record.sensorNeededFor,
            .baseUnit = record.baseUnit,
            .sensorId = record.sensorID,
            .entityInstance = record.entityInstanceNumber,
            .entityType = record.entityType,
            .temperature = record.temperature,
            .thresholdReadError = record.thresholdReadingError,
            .upperFatal = record.upperThresholdFatal,
            .upperCritical = record.upperThresholdCritical,
            .upperWarning = record.upperThresholdWarning,
            .normalMax = record.normalMax,
            .normalMin = record.normalMin,
            .lowerFatal = record.lowerThresholdFatal,
            .lowerCritical = record.lowerThresholdCritical,
            .lowerWarning = record.lowerThresholdWarning,
            .name = record.auxSensorName};
}

} // namespace vantric
