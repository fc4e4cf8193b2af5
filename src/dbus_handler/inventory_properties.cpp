#include "dbus_handler/inventory_properties.hpp"

#include "vocabulary/ldid.hpp"

#include <sstream>
#include <string_view>

namespace vantric {

namespace {

constexpr std::uint16_t deviceTypeAccelerator = 2;
constexpr std::uint16_t deviceTypeCard = 9;
constexpr std::uint16_t statusGood = 2;
constexpr std::uint16_t noAcceleratorAssociation = 10;

std::uint32_t NumberOf(const std::string& text) {
    std::istringstream stream(text);
    std::uint32_t number = 0;
    stream >> number;
    return stream.fail() ? 0 : number;
}

} // namespace

PropertyBag<bindings::FRU> BuildFruProperties(const FruFields& fields) {
    PropertyBag<bindings::FRU> bag;
    Put(bag, "ChassisType", fields.chassisType);
    Put(bag, "Model", fields.model);
    Put(bag, "PN", fields.partNumber);
    Put(bag, "SN", fields.serialNumber);
    Put(bag, "Manufacturer", fields.manufacturer);
    Put(bag, "ManufacturerDate", fields.manufactureDate);
    Put(bag, "Vendor", fields.vendor);
    Put(bag, "Name", fields.name);
    Put(bag, "SKU", fields.sku);
    Put(bag, "Version", fields.version);
    Put(bag, "AssetTag", fields.assetTag);
    Put(bag, "Description", fields.description);
    Put(bag, "ECLevel", fields.ecLevel);
    Put(bag, "Other", fields.other);
    Put(bag, "IANA", NumberOf(fields.iana));
    return bag;
}

PropertyBag<bindings::Inventory> BuildInventoryProperties(const std::string& ldid,
                                                          const FruFields& fields) {
    const bool accelerator = ldid.find(acceleratorLdid) != std::string::npos;
    PropertyBag<bindings::Inventory> bag;
    Put(bag, "LDID", ldid);
    Put(bag, "DeviceType", accelerator ? deviceTypeAccelerator : deviceTypeCard);
    Put(bag, "FriendlyLDID", MakeFriendlyLdid(ldid));
    Put(bag, "DeviceStatus", statusGood);
    Put(bag, "AcceleratorAssociation", noAcceleratorAssociation);
    Put(bag, "CPUAffinity", fields.cpuAffinity);
    Put(bag, "FirmwareVersion", fields.firmwareVersion);
    return bag;
}

std::string AcceleratorAssociationName(const std::string& path) {
    constexpr std::string_view root = "/xyz/openbmc_project/inventory/system/accelerator/";
    const auto found = path.find(root);
    if (found == std::string::npos) {
        return {};
    }
    const auto begin = found + root.size();
    return path.substr(begin, path.find('/', begin) - begin);
}

} // namespace vantric
