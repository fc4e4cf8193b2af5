/** Retyping the sensors of a card that turns out to be an OCP card. */
#include "common/log.hpp"
#include "dbus_handler/handlers.hpp"

namespace vantric {

namespace {

std::string SlotLdid(std::uint8_t slot) {
    return "NIC.Slot." + std::to_string(slot);
}

/** Makes the object an OCP sensor, numbered by counter. */
void WriteOcpType(bindings::ThermalSensor& object, bindings::ThermalSensor::dev_types type,
                  std::uint16_t& counter) {
    object.sensorType(type);
    object.deviceType(ocpDeviceType);
    object.instance(counter);
    ++counter;
}

} // namespace

void DBusHandler::UpdateSensorType(std::uint8_t slot) {
    try {
        {
            const std::lock_guard lock(objectsMutex);
            ++fruEvents[slot];
            if (!thermalProbeObjects.contains(SlotLdid(slot))) {
                return;
            }
        }
        // Without the lock: the main thread need not stand still while the entity manager thinks.
        if (!IsOcpCard(slot)) {
            return;
        }
        dbusRetypeSensors.Post({slot}).LogFailure(LOG_LEVEL_ERROR);
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s\n", error.what());
    }
}

std::uint32_t DBusHandler::FruEventsOf(std::uint8_t slot) {
    const std::lock_guard lock(objectsMutex);
    return fruEvents[slot];
}

void DBusHandler::RetypeSensors(const RetypeRequest& request) {
    using enum bindings::ThermalSensor::dev_types;
    const std::string key = SlotLdid(request.slot);
    const std::lock_guard lock(objectsMutex);
    const auto card = thermalProbeObjects.find(key);
    if (card == thermalProbeObjects.end()) {
        return; // gone while the entity manager was asked
    }
    for (const auto& [path, object] : card->second) {
        const auto entry = sensorCategories.find(path);
        if (entry == sensorCategories.end()) {
            continue;
        }
        if (entry->second == SENSOR_CATEGORY_ASIC && object->sensorType() != NDC_ASIC) {
            VANTRIC_LOG(LOG_LEVEL_TRACE, "Updating Sensor Type to NDC_ASIC for %s\n", key.c_str());
            WriteOcpType(*object, NDC_ASIC, numbering.ndcAsicInstance);
        } else if (entry->second == SENSOR_CATEGORY_OPTICS && object->sensorType() != NDC_OPTICS) {
            VANTRIC_LOG(LOG_LEVEL_TRACE, "Updating Sensor Type to NDC_OPTIC for %s\n", key.c_str());
            WriteOcpType(*object, NDC_OPTICS, numbering.ndcOpticsInstance);
        }
    }
}

} // namespace vantric
