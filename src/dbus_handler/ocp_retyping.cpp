// SPDX-License-Identifier: Apache-2.0
/** Retyping the sensors of a card that turns out to be an OCP card. */
#include "common/log.hpp"
#include "dbus_handler/handlers.hpp"
#include "dbus_handler/platform_reads.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/ldid.hpp"

namespace vantric {

namespace {

std::string SlotLdid(std::uint8_t slot) {
    return Ldid::Make(PCIE_CLASS_NIC, slot)->Text();
}

} // namespace

void PublishedObjects::UpdateSensorType(std::uint8_t slot) {
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

std::uint32_t PublishedObjects::FruEventsOf(std::uint8_t slot) {
    const std::lock_guard lock(objectsMutex);
    return fruEvents[slot];
}

void PublishedObjects::RetypeSensors(const RetypeRequest& request) {
    const std::string ldid = SlotLdid(request.slot);
    const std::lock_guard lock(objectsMutex);
    const auto card = thermalProbeObjects.find(ldid);
    if (card == thermalProbeObjects.end()) {
        return; // gone while the entity manager was asked
    }
    for (const auto& [path, object] : card->second) {
        thermalTyping.MakeOcp(path, *object, ldid);
    }
}

void PublishedObjects::ForgetNumbering(const NumberingResetRequest& /*request*/) {
    thermalTyping = {};
}

} // namespace vantric
