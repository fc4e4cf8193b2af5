/** The steps of an inventory that all classes of devices share. */
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/post_request.hpp"
#include "common/process_flags.hpp"
#include "dbus_handler/handlers.hpp"

#include <chrono>

namespace vantric {

namespace {

constexpr std::chrono::seconds retryPause{5};
constexpr std::uint32_t allTypes = 255;
constexpr std::uint32_t baseType = 0;
constexpr std::uint8_t forcedRead = 1;

} // namespace

int Device::GatherInventory() {
    modeling->DeleteDBUSPaths(CLEAR_ALL);
    const auto lock = Acquire();
    for (auto& endpoint : cmds) {
        if (GatherEndpoint(*endpoint) != 0) {
            return 1;
        }
    }
    return 0;
}

int Device::GatherEndpoint(PLDMCmds& endpoint) {
    endpoint.ResetExtractedData();
    if (endpoint.GetPLDMTypes() != 0) {
        return 1;
    }
    FRUInventory();
    endpoint.GetPLDMVersions(allTypes);
    if (endpoint.GetSupportedCmds(baseType) != 0) {
        return 1;
    }
    endpoint.SelectPLDMVersions();
    if (endpoint.GetTID() != 0 || endpoint.GetPDRRepositoryInfo(forcedRead) != 0) {
        return 1;
    }
    return endpoint.SetNumericeSensorEnable();
}

void Device::FinishInventory(std::uint32_t generationBefore) {
    {
        const auto lock = Acquire();
        if (generation == generationBefore || controllerEIDMap.size() < 2) {
            state = DEVICE_MONITORING;
        }
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Inventory successful for slot %d\n", slotNumber);
}

void Device::GiveUpInventory(std::uint32_t generationBefore) {
    bool newEndPoints = false;
    {
        // The table's thread may have come and gone since the command gave up for it: then its flag
        // is clear again, but the device has its endpoints.
        const auto lock = Acquire();
        newEndPoints = useNewEndPoints || generation != generationBefore;
        state = newEndPoints ? DEVICE_INVENTORY : DEVICE_SWITCH_TO_I2C;
    }
    if (newEndPoints) {
        Pause(retryPause);
    } else {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "PLDM Inventory failed for slot %d\n", slotNumber);
    }
}

void Device::FRUInventory() {
    const int result = PostRequest(dbusInvDataInsert,
                                   PlainInventoryRequest{
                                       .firmwareVersion = firmwareVersion,
                                       .slot = slotNumber,
                                       .deviceLdid = ldid,
                                       .objectPath = inventoryBasePath + std::to_string(slotNumber),
                                       .identity = identity,
                                       .cpuAffinity = cpuAffinity,
                                       .resolvedLdid = {},
                                   });
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "OneWayChannel_Execute ERROR, execRet = %d\n", result);
    }
}

void Device::UpdateControllerInvData(std::uint8_t index) {
    const int result = PostRequest(
        dbusControllerData, ControllerRequest{
                                .objectPath = inventoryBasePath + std::to_string(slotNumber) +
                                              "/networkcontroller_" + std::to_string(index),
                                .deviceLdid = ldid,
                                .slot = slotNumber,
                                .cpuAffinity = static_cast<std::uint8_t>(cpuAffinity),
                            });
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "OneWayChannel_Execute ERROR, execRet = %d\n", result);
    }
}

} // namespace vantric
