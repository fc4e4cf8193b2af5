/** What an inventory publishes of the device itself. */
#include "device/device.hpp"

#include <utility>

namespace vantric {

namespace {

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

std::string Device::ObjectPath() const {
    return inventoryBasePath + std::to_string(slotNumber);
}

void Device::RefreshFWVersion(PLDMCmds& endpoint, bool publish) {
    firmwareVersion = endpoint.GetFWParameters();
    if (publish && !firmwareVersion.empty()) {
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

void Device::UpdateControllerInvData(std::uint8_t index) {
    doors.publisher
        .UpdateControllerInventory({
            .objectPath = ObjectPath() + "/networkcontroller_" + std::to_string(index),
            .deviceLdid = ldid,
            .slot = slotNumber,
            .cpuAffinity = static_cast<std::uint8_t>(cpuAffinity),
        })
        .LogFailure(LOG_LEVEL_TRACE);
}

} // namespace vantric
