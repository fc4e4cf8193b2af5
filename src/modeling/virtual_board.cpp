#include "modeling/virtual_board.hpp"

#include "vocabulary/entity_types.hpp"
#include "vocabulary/sensor_tag.hpp"
#include "vocabulary/vocabulary.hpp"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace vantric {

namespace {

constexpr auto acceleratorRoot =
    "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/Slot/";
constexpr auto sharedSensorRoot = "/xyz/openbmc_project/sensors/temperature/ProcAccelerator.Slot.";

/** The number between "Slot." and "-". */
std::optional<std::uint8_t> SlotOf(std::string_view path) {
    constexpr std::string_view mark = "Slot.";
    const auto found = path.find(mark);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    const auto digits = path.substr(found + mark.size());
    std::uint8_t slot = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), slot);
    const bool complete = end != digits.data() + digits.size() && *end == '-';
    return error == std::errc{} && complete ? std::optional(slot) : std::nullopt;
}

} // namespace

bool IsVirtualBoard(const PciIdentity& identity) {
    constexpr std::uint16_t vendor = 0x1002;
    return identity.vendorId == vendor && identity.subVendorId == vendor &&
           (identity.deviceId == 0x75A0 || identity.deviceId == 0x75A3);
}

std::string VirtualAcceleratorLdid(const std::string& slot) {
    return "ProcAccelerator.Slot." + slot + "-1";
}

SensorPlace SharedSensorPlace(std::uint8_t slot) {
    const std::string number = std::to_string(slot);
    return {.slot = slot,
            .sensorPath =
                sharedSensorRoot + number + "_1" + SensorTail(CONTROLLER_UNTOLD, sharedSensorId),
            .resolvedLdid = VirtualAcceleratorLdid(number),
            .inventoryPath = acceleratorRoot + number,
            .name = {}};
}

bool ResolveVirtualSensor(const __Sensor& sensor, SensorPlace& place) {
    const auto row = std::ranges::find_if(virtualSensorLdids, [&sensor](const auto& candidate) {
        return sensor.name.find(candidate.first) != std::string::npos;
    });
    if (row == virtualSensorLdids.end()) {
        return false;
    }
    place.resolvedLdid = row->second;
    place.sensorPath.erase(place.sensorPath.rfind('/') + 1);
    place.sensorPath += row->second + SensorTail(CONTROLLER_UNTOLD, sensor.sensorId);
    if (const auto slot = SlotOf(place.sensorPath)) {
        place.slot = *slot;
        place.inventoryPath = acceleratorRoot + std::to_string(*slot);
    }
    if (place.sensorPath.find("UBB") != std::string::npos) {
        place.inventoryPath = virtualBoardPath;
    }
    return true;
}

void VirtualStateSensorPath(StateSensorRequest& request) {
    const std::string tail = StateSensorTail(CONTROLLER_UNTOLD, request.sensorId);
    if (request.entityType == ENTITY_ADD_IN_CARD) {
        request.statePath = virtualBoardPath + tail;
        request.secondLdid = virtualBoardLdid;
    } else if (request.entityType == ENTITY_LOGICAL_ACCELERATOR) {
        const auto row =
            virtualInstanceSlots.find(static_cast<std::uint8_t>(request.entityInstance));
        if (row != virtualInstanceSlots.end()) {
            request.statePath = acceleratorRoot + row->second + tail;
            request.secondLdid = VirtualAcceleratorLdid(row->second);
            request.entityInstance = 0;
        }
    }
}

} // namespace vantric
