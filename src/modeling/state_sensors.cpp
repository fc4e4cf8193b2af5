/** Names of state sensors, and the posts that create their objects. */
#include "modeling/modeling.hpp"

#include "common/log.hpp"
#include "modeling/paths.hpp"
#include "modeling/virtual_board.hpp"
#include "vocabulary/entity_types.hpp"

#include <utility>

namespace vantric {

namespace {

/** What a request holds of the sensor's record in every case. */
StateSensorRequest Describe(const _StateSensors& sensor, std::uint8_t slot) {
    StateSensorRequest request;
    request.slot = slot;
    request.entityType = sensor.entityType;
    request.entityInstance = sensor.entityInstanceNumber;
    request.sensorId = sensor.sensorId;
    request.memberCount = sensor.compositeSensorCount;
    for (const auto& member : sensor.compositeSensors) {
        request.memberNames.push_back(member.sensorName);
    }
    return request;
}

/** The path of a connector without a node doesn't lead over the controller. The outermost connector
 *  types have always had the longer path. */
bool LiesUnderController(std::uint16_t entityType) {
    return entityType <= 200 || entityType >= 299;
}

} // namespace

void Modeling::AttachStateSensors(const StateSensors& stateSensors, bool flat,
                                  std::uint8_t controller) {
    connectorCount = portCount;
    for (const auto& sensor : stateSensors) {
        if (flat || controller == 2) {
            StateSensorRequest request = Describe(*sensor, device.slot);
            if (flat) {
                request.entityInstance = 0;
            }
            for (const auto& member : sensor->compositeSensors) {
                request.stateSetNames.push_back(member.stateSetName);
            }
            UpdateDbus(std::move(request), flat, controller);
            continue;
        }
        PDRTree* node = tree.FindNodeOrRoot(
            {sensor->containerID, sensor->entityType, sensor->entityInstanceNumber});
        if (node != nullptr) {
            node->stateSensors.push_back(sensor);
        }
    }
}

void Modeling::StateSensorHandler(_StateSensors& sensor, const std::string& inventoryPath) {
    const std::uint8_t connector = ConnectorNumber(inventoryPath);
    if (IsConnector(sensor.entityType) && connector != 0) {
        sensor.entityInstanceNumber = connector;
    } else if (sensor.entityType == ENTITY_ADD_IN_CARD ||
               sensor.entityType == ENTITY_NETWORK_CONTROLLER) {
        sensor.entityInstanceNumber = 0;
    }
    StateSensorRequest request = Describe(sensor, device.slot);
    request.statePath = inventoryPath + StateSensorTail(Tag(1), sensor.sensorId);
    request.deviceLdid = device.ldid;
    request.secondLdid = device.ldid;
    if (IsVirtualBoard(device.identity)) {
        VirtualStateSensorPath(request);
    }
    UpdateDbus(std::move(request), false, 1);
}

void Modeling::UpdateDbus(StateSensorRequest request, bool flat, std::uint8_t controller) {
    if (request.statePath.empty()) {
        if (EntityWord(request.entityType).empty()) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid/Not supported EntityType: %d\n",
                        request.entityType);
            return;
        }
        PlaceWithoutNode(request, flat, controller);
    }
    if (request.entityType == ENTITY_NETWORK_CONTROLLER ||
        request.entityType == ENTITY_ADD_IN_CARD || request.entityType == ENTITY_ACCELERATOR) {
        request.entityInstance = 0;
    }
    if (request.deviceLdid.empty()) {
        request.deviceLdid = device.ldid;
    }
    publisher.InsertStateSensor(std::move(request)).LogFailure(LOG_LEVEL_TRACE);
}

void Modeling::PlaceWithoutNode(StateSensorRequest& request, bool flat, std::uint8_t controller) {
    const std::uint16_t entityType = request.entityType;
    std::string path = InventoryRoot();
    if (LiesUnderController(entityType)) {
        path += ControllerPiece(controller);
    }
    if (!flat && entityType != ENTITY_NETWORK_CONTROLLER) {
        const std::string piece = "/" + EntityWord(entityType) + "_";
        request.entityInstance += portCount;
        if (controller != 2 || IsPort(entityType)) {
            path += piece + std::to_string(request.entityInstance);
        } else if (IsConnector(entityType)) {
            request.entityInstance = ++connectorCount;
            path += "/connector_" + std::to_string(connectorCount) + piece + "1";
        }
    }
    request.statePath = path + StateSensorTail(Tag(controller), request.sensorId);
}

} // namespace vantric
