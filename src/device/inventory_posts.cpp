/** What an inventory publishes of the device itself. */
#include "device/device.hpp"

#include "common/log.hpp"
#include "common/post_request.hpp"
#include "dbus_handler/handlers.hpp"

#include <utility>

namespace vantric {

namespace {

template <typename Record>
void Post(RequestHandler handler, Record record) {
    const int result = PostRequest(handler, std::move(record));
    if (result != 0) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "OneWayChannel_Execute ERROR, execRet = %d\n", result);
    }
}

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
    Post(dbusFWDataUpdate, FirmwareRequest{.deviceLdid = ldid, .version = version});
}

void Device::FRUInventory(PLDMCmds& endpoint) {
    if (endpoint.GetFRUMetaData() != 0 || endpoint.GetFRUContents() != 0) {
        Post(dbusInvDataInsert, PlainInventoryRequest{
                                    .firmwareVersion = firmwareVersion,
                                    .slot = slotNumber,
                                    .deviceLdid = ldid,
                                    .objectPath = ObjectPath(),
                                    .identity = identity,
                                    .cpuAffinity = cpuAffinity,
                                    .resolvedLdid = {},
                                });
        return;
    }
    // Without a general record there is nothing to tell, and the object says so.
    const auto& contents = endpoint.ExtractedData().fruContents;
    FruFields fields = contents ? FieldsOf(*contents) : FruFields{};
    fields.identity = identity;
    fields.cpuAffinity = cpuAffinity;
    fields.firmwareVersion = firmwareVersion;
    Post(dbusFruDataInsert, FruInventoryRequest{
                                .fields = std::move(fields),
                                .deviceLdid = ldid,
                                .objectPath = ObjectPath(),
                                .slot = static_cast<std::uint8_t>(slotNumber),
                            });
}

void Device::UpdateControllerInvData(std::uint8_t index) {
    Post(dbusControllerData,
         ControllerRequest{
             .objectPath = ObjectPath() + "/networkcontroller_" + std::to_string(index),
             .deviceLdid = ldid,
             .slot = slotNumber,
             .cpuAffinity = static_cast<std::uint8_t>(cpuAffinity),
         });
}

} // namespace vantric
