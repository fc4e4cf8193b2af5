// SPDX-License-Identifier: Apache-2.0
#include "modeling/accelerator_board.hpp"

#include "modeling/paths.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/entity_types.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace vantric::accelerator_board {

namespace {

constexpr std::uint16_t sharedSensorId = 1;

/** Part of a sensor's name to what the sensor stands for. In the order in which a name is searched
 *  for them; a name should hold one of them only. */
const std::vector<std::pair<std::string_view, Ldid>> ldidsByName{
    {"UBB", Ldid::OfBoard()},
    {"GPU_TOTAL_POWER", Ldid::OfBoard()},
    {"IBC", Ldid::OfBoard()},
    {"RETIMER_0_TEMP", Ldid::OfBoard()},
    {"RETIMER_1_TEMP", Ldid::OfBoard()},
    {"RETIMER_2_TEMP", Ldid::OfBoard()},
    {"GPU0", Ldid::OfAccelerator(24)},
    {"GPU1", Ldid::OfAccelerator(28)},
    {"GPU2", Ldid::OfAccelerator(27)},
    {"GPU3", Ldid::OfAccelerator(23)},
    {"GPU4", Ldid::OfAccelerator(22)},
    {"GPU5", Ldid::OfAccelerator(26)},
    {"GPU6", Ldid::OfAccelerator(25)},
    {"GPU7", Ldid::OfAccelerator(21)},
};

/** Slots of the logical accelerators, from instance 1 on. GPU numbers count from 0 over the same.
 */
constexpr std::array<std::uint8_t, 8> slotsByInstance{24, 28, 27, 23, 22, 26, 25, 21};

std::string AcceleratorPath(std::uint8_t slot) {
    return std::string(InventoryBasePath(PCIE_CLASS_ACCELERATOR)) + std::to_string(slot);
}

void ShowSharedSensor(SensorInsertRequest& request, std::uint8_t slot) {
    request.objectPath =
        std::string(temperatureRoot) + "/ProcAccelerator.Slot." + SharedSensorKey(slot);
    request.inventoryPath = AcceleratorPath(slot);
    request.resolvedLdid = Ldid::OfAccelerator(slot).Text();
    request.slot = slot;
}

/** False, and nothing changed, if the sensor's name tells nothing. */
bool ResolveVirtualSensor(SensorInsertRequest& request) {
    const auto row = std::ranges::find_if(ldidsByName, [&request](const auto& candidate) {
        return request.sensor.name.find(candidate.first) != std::string::npos;
    });
    if (row == ldidsByName.end()) {
        return false;
    }
    const Ldid& ldid = row->second;
    request.objectPath = SensorPath(request.sensor, ldid.Text(), CONTROLLER_UNTOLD);
    request.resolvedLdid = ldid.Text();
    request.slot = ldid.SlotBeforeDash().value_or(0);
    request.inventoryPath = ldid.IsBoard() ? boardInventoryPath : AcceleratorPath(request.slot);
    return true;
}

} // namespace

bool IsBoard(const PciIdentity& identity) {
    constexpr std::uint16_t vendor = 0x1002;
    return identity.vendorId == vendor && identity.subVendorId == vendor &&
           (identity.deviceId == 0x75A0 || identity.deviceId == 0x75A3);
}

std::vector<InventoryObject> InventoryObjects() {
    std::vector<InventoryObject> objects{{Ldid::OfBoard(), std::string(boardInventoryPath)}};
    for (const std::uint8_t slot : slots) {
        objects.push_back({Ldid::OfAccelerator(slot), AcceleratorPath(slot)});
    }
    return objects;
}

std::vector<SensorInsertRequest> PlaceNumericSensor(SensorInsertRequest request,
                                                    const PDRTree& node) {
    // The low byte of a logical type is that of the physical one, whose word it gets.
    const auto entityType = static_cast<std::uint8_t>(node.entityType);
    const auto instance = static_cast<std::uint8_t>(node.entityInstance);
    const std::string& word = EntityWord(entityType);
    request.sensor.entityInstance = instance;
    if (word.empty()) {
        request.entityName = "add_in_card1";
    } else {
        request.entityName = instance != 0 ? EntityName(entityType, instance) : word;
    }
    std::vector<SensorInsertRequest> requests;
    if (request.sensor.sensorId == sharedSensorId) {
        for (const std::uint8_t slot : slots) {
            ShowSharedSensor(requests.emplace_back(request), slot);
        }
    } else if (ResolveVirtualSensor(request)) {
        requests.push_back(std::move(request));
    }
    return requests;
}

void VirtualStateSensorPath(StateSensorRequest& request) {
    const std::string tail = StateSensorTail(CONTROLLER_UNTOLD, request.sensorId);
    if (request.entityType == ENTITY_ADD_IN_CARD) {
        request.statePath = std::string(boardInventoryPath) + tail;
        request.secondLdid = Ldid::OfBoard().Text();
    } else if (request.entityType == ENTITY_LOGICAL_ACCELERATOR) {
        const auto instance = static_cast<std::uint8_t>(request.entityInstance);
        if (instance != 0 && instance <= slotsByInstance.size()) {
            const std::uint8_t slot = slotsByInstance[instance - 1];
            request.statePath = AcceleratorPath(slot) + tail;
            request.secondLdid = Ldid::OfAccelerator(slot).Text();
            request.entityInstance = 0;
        }
    }
}

std::string SharedSensorKey(std::uint8_t slot) {
    return std::to_string(slot) + "_1" + SensorTail(CONTROLLER_UNTOLD, sharedSensorId);
}

} // namespace vantric::accelerator_board
