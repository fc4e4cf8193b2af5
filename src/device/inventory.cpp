// SPDX-License-Identifier: Apache-2.0
/** The steps of an inventory that all classes of devices share, and what it publishes of the device
 *  itself. */
#include "device/device.hpp"

#include "common/status.hpp"

#include <utility>

namespace vantric {

namespace {

constexpr std::uint32_t allTypes = 255;
constexpr std::uint32_t baseType = 0;
constexpr std::uint8_t forcedRead = 1;

FruFields FieldsOf(const __FRUContents& contents) {
    return FruFields{
        .identity = {},
        .cpuAffinity = 0,
        .chassisType = contents.ChassisType,
        .model = contents.Model,
        .partNumber = contents.PN,
        .serialNumber = contents.SN,
        .manufacturer = contents.Manufacturer,
        .manufactureDate = contents.ManufacturerDate,
        .vendor = contents.Vendor,
        .name = contents.Name,
        .sku = contents.SKU,
        .version = contents.Version,
        .assetTag = contents.AssetTag,
        .description = contents.Description,
        .ecLevel = contents.ECLevel,
        .other = contents.Other,
        .iana = contents.IANA,
        .firmwareVersion = {},
    };
}

} // namespace

VantricStatus Device::GatherInventory() {
    modeling->DeleteDBUSPaths(CLEAR_ALL);
    const auto lock = endpoints.BeginWork();
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
    RefreshFWVersion(endpoint, FirmwareUse::KEEP);
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

void Device::RefreshFWVersion(PLDMCmds& endpoint, FirmwareUse use) {
    firmwareVersion = endpoint.GetFWParameters();
    if (use == FirmwareUse::PUBLISH && !firmwareVersion.empty()) {
        UpdateFWVersion(firmwareVersion);
    }
}

void Device::UpdateFWVersion(const std::string& version) {
    doors.publisher.UpdateFWVersion({.deviceLdid = ldid, .version = version})
        .LogFailure(LOG_LEVEL_TRACE);
}

void Device::FRUInventory(PLDMCmds& endpoint) {
    if (endpoint.GetFRUMetaData() != STATUS_SUCCESS ||
        endpoint.GetFRUContents() != STATUS_SUCCESS) {
        doors.publisher
            .InsertPlainInventory({
                .firmwareVersion = firmwareVersion,
                .slot = slotNumber,
                .deviceLdid = ldid,
                .objectPath = ObjectPath(),
                .identity = identity,
                .cpuAffinity = cpuAffinity,
                .resolvedLdid = {},
            })
            .LogFailure(LOG_LEVEL_TRACE);
        return;
    }
    // Without a general record there is nothing to tell, and the object says so.
    const auto& contents = endpoint.ExtractedData().fruContents;
    FruFields fields = contents ? FieldsOf(*contents) : FruFields{};
    fields.identity = identity;
    fields.cpuAffinity = cpuAffinity;
    fields.firmwareVersion = firmwareVersion;
    doors.publisher
        .InsertFruInventory({
            .fields = std::move(fields),
            .deviceLdid = ldid,
            .objectPath = ObjectPath(),
            .slot = static_cast<std::uint8_t>(slotNumber),
        })
        .LogFailure(LOG_LEVEL_TRACE);
}

void Device::UpdateControllerInvData(const Controller& controller) {
    doors.publisher
        .UpdateControllerInventory({
            .objectPath = ObjectPath() + "/networkcontroller_" + std::to_string(controller.number),
            .deviceLdid = ldid,
            .slot = slotNumber,
            .cpuAffinity = static_cast<std::uint8_t>(cpuAffinity),
        })
        .LogFailure(LOG_LEVEL_TRACE);
}

} // namespace vantric
