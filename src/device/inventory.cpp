/** The steps of an inventory that all classes of devices share. */
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/process_flags.hpp"
#include "common/status.hpp"

#include <chrono>

namespace vantric {

namespace {

constexpr std::chrono::seconds retryPause{5};
constexpr std::uint32_t allTypes = 255;
constexpr std::uint32_t baseType = 0;
constexpr std::uint8_t forcedRead = 1;

} // namespace

VantricStatus Device::GatherInventory() {
    modeling->DeleteDBUSPaths(CLEAR_ALL);
    const auto lock = BeginWork();
    gaveWay = false;
    for (auto& endpoint : cmds) {
        if (GatherEndpoint(*endpoint) != STATUS_SUCCESS) {
            gaveWay = endpoint->LastStatus() == STATUS_NEW_END_POINTS;
            return STATUS_FAILURE;
        }
    }
    return STATUS_SUCCESS;
}

VantricStatus Device::GatherEndpoint(PLDMCmds& endpoint) {
    endpoint.ResetExtractedData();
    if (endpoint.GetPLDMTypes() != STATUS_SUCCESS) {
        return STATUS_FAILURE;
    }
    RefreshFWVersion(endpoint, false);
    FRUInventory(endpoint);
    endpoint.GetPLDMVersions(allTypes);
    if (endpoint.GetSupportedCmds(baseType) != STATUS_SUCCESS) {
        return STATUS_FAILURE;
    }
    endpoint.SelectPLDMVersions();
    if (endpoint.GetTID() != STATUS_SUCCESS ||
        endpoint.GetPDRRepositoryInfo(forcedRead) != STATUS_SUCCESS) {
        return STATUS_FAILURE;
    }
    return endpoint.SetNumericeSensorEnable();
}

void Device::FinishInventory(const char* outcome) {
    {
        const auto lock = Acquire();
        if (workControllers == controllerEIDMap || controllerEIDMap.size() < 2) {
            state = DEVICE_MONITORING;
        }
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Inventory %s for slot %d\n", outcome, slotNumber);
}

void Device::GiveUpInventory() {
    bool newEndPoints = false;
    {
        // The table's thread may have come and gone since a command gave way to it, for this device
        // or for another: then its flag is clear again.
        const auto lock = Acquire();
        newEndPoints = gaveWay || useNewEndPoints || generation != workGeneration;
        state = newEndPoints ? DEVICE_INVENTORY : DEVICE_SWITCH_TO_I2C;
    }
    if (newEndPoints) {
        Pause(retryPause);
    } else {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "PLDM Inventory failed for slot %d\n", slotNumber);
    }
}

} // namespace vantric
