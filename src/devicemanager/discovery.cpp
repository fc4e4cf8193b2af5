// SPDX-License-Identifier: Apache-2.0
/** From an endpoint table to the devices that it shows. */
#include "devicemanager/device_manager.hpp"
#include "devicemanager/end_point_entry.hpp"
#include "devicemanager/pcie_table.hpp"
#include "vocabulary/device_classes.hpp"

#include "common/log.hpp"

#include <mctplink.h>

#include <span>

namespace vantric {

namespace {

void LogEntry(const EndPointEntry& entry) {
    VANTRIC_LOG(LOG_LEVEL_TRACE,
                "SlotNu[%d]:SlotType[%d]:EPType[%d]:PLDM[%d]:EID[%d]:I2C[%d]:VDM[%d]:LDIDSTR[%s]\n",
                entry.slotNumber, entry.slotType, entry.endPointType, entry.pldm, entry.eid,
                entry.i2c, entry.vdm, entry.ldidText.c_str());
}

/** What the PCIe table and the entry together tell of the entry's device; nothing if it isn't one.
 */
std::optional<DeviceDetails> DescribeDevice(const EndPointEntry& entry, std::uint32_t instance) {
    auto details = getDevicePCIeIDsForSlot(entry);
    if (!details) {
        if (entry.slotType != SLOT_TYPE_EMBEDDED || entry.endPointType != END_POINT_TYPE_PCI) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "getPCIDeviceIDForSlot() failed error\n");
            return std::nullopt;
        }
        // An embedded NIC counts even where the PCIe table doesn't know it.
        details.emplace().deviceType = PCIE_CLASS_EMBEDDED_NIC;
    }
    details->busAddress = entry.busAddress;
    details->bdf = entry.bdf;
    details->slotNumber = entry.slotNumber;
    if (details->deviceType == PCIE_CLASS_EMBEDDED_NIC) {
        details->slotNumber = instance != 0 ? 1 : 0;
    }
    return details;
}

void AddEndPoint(DeviceDetails& details, const EndPointEntry& entry, std::uint32_t instance) {
    EID_table endpoint{
        .busAddress = entry.busAddress, .bdf = entry.bdf, .eid = entry.eid, .instance = 0};
    if (entry.i2c != 0) {
        details.i2cEIDs.push_back(endpoint);
    } else if (entry.vdm != 0) {
        endpoint.instance = entry.slotType == SLOT_TYPE_EMBEDDED ? instance : 0;
        details.vdmEIDs.push_back(endpoint);
    }
}

void AddEntry(DeviceManager::DiscoveredMap& discovered, const EndPointEntry& entry) {
    const auto instance = InstanceNumber(entry.ldidText);
    LogEntry(entry);
    if (!IsServed(entry)) {
        return;
    }
    if (!instance) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "No instance number in the LDID text of EID = %d\n",
                    entry.eid);
        return;
    }
    const auto details = DescribeDevice(entry, *instance);
    if (!details) {
        return;
    }
    // Several endpoints of a card make one device; the first of them described it.
    const auto [device, isNew] = discovered.try_emplace(details->ldid, *details);
    AddEndPoint(device->second, entry, *instance);
}

} // namespace

DeviceManager::DiscoveredMap
DeviceManager::filterPLDMSupportedDevices(const std::any& payload) const {
    DiscoveredMap discovered;
    const auto* const* table = std::any_cast<const MctpLinkEndPointResp*>(&payload);
    if (table == nullptr || *table == nullptr) {
        return discovered;
    }
    // The entries stand after the head; the library vouches for their number and nothing else.
    const auto* entries = reinterpret_cast<const std::uint8_t*>(*table) + sizeof(**table);
    const std::span<const std::uint8_t> bytes(entries, (*table)->entryCount * endPointEntrySize);
    for (std::size_t at = 0; at < bytes.size(); at += endPointEntrySize) {
        AddEntry(discovered, ReadEndPointEntry(bytes.subspan(at, endPointEntrySize)));
    }
    return discovered;
}

} // namespace vantric
