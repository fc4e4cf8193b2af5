// SPDX-License-Identifier: Apache-2.0
#include "devicemanager/pcie_table.hpp"

#include "common/byte_reader.hpp"
#include "common/log.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/ldid.hpp"

#include <slotcatalog.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace vantric {

namespace {

/** The library is told of as much room as it announced, and has it: how much of it a call uses is
 *  not ours to know. Only an absurd claim is cut, at sixteen times what a group's count can tell.
 */
constexpr std::uint32_t mostRecords = 4096;

/** One record of the table, as far as discovery looks at it. */
struct PcieRecord {
    PciIdentity identity;
    std::uint8_t locatorType = 0;
    std::uint16_t slotNumber = 0;
    std::uint8_t deviceClass = 0;
    std::uint8_t cpuAffinity = 0;
};

PcieRecord ReadRecord(std::span<const std::uint8_t> bytes) {
    ByteReader reader(bytes);
    PcieRecord record;
    record.identity.vendorId = reader.At<std::uint16_t>(offsetof(SlotCatalogRecord, vendorId));
    record.identity.deviceId = reader.At<std::uint16_t>(offsetof(SlotCatalogRecord, deviceId));
    record.identity.subVendorId =
        reader.At<std::uint16_t>(offsetof(SlotCatalogRecord, subVendorId));
    record.identity.subDeviceId =
        reader.At<std::uint16_t>(offsetof(SlotCatalogRecord, subDeviceId));
    record.locatorType = reader.At<std::uint8_t>(offsetof(SlotCatalogRecord, locatorType));
    record.slotNumber = reader.At<std::uint16_t>(offsetof(SlotCatalogRecord, slotNumber));
    record.deviceClass = reader.At<std::uint8_t>(offsetof(SlotCatalogRecord, deviceClass));
    record.cpuAffinity = reader.At<std::uint8_t>(offsetof(SlotCatalogRecord, cpuAffinity));
    return record;
}

/** What a record tells of its device; nothing if it isn't one to serve. */
std::optional<DeviceDetails> Accept(const PcieRecord& record, const EndPointEntry& entry) {
    const std::uint16_t slot = entry.slotNumber;
    DeviceDetails device;
    device.deviceType = record.deviceClass;
    device.identity = record.identity;
    device.cpuAffinity = record.cpuAffinity;
    if (entry.slotType == SLOT_TYPE_EMBEDDED) {
        device.deviceType = PCIE_CLASS_EMBEDDED_NIC;
        device.ldid = Ldid::Make(PCIE_CLASS_EMBEDDED_NIC, slot != 0 ? 1 : 0)->Text();
        return device;
    }
    const auto ldid = Ldid::Make(record.deviceClass, slot);
    if (!ldid) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Device type [%d] is not supported for slot %d\n",
                    record.deviceClass, slot);
        return std::nullopt;
    }
    device.ldid = ldid->Text();
    if (record.deviceClass == PCIE_CLASS_ACCELERATOR) {
        if (entry.endPointType != END_POINT_TYPE_ACCELERATOR) {
            return std::nullopt;
        }
        device.ldid += "-1";
    }
    return device;
}

/** The first record of a group that leads to a device. */
std::optional<DeviceDetails> SearchGroup(std::span<const std::uint8_t> records,
                                         const EndPointEntry& entry) {
    const std::uint8_t locator = entry.slotType == SLOT_TYPE_EMBEDDED ? SLOTCATALOG_LOCATOR_EMBEDDED
                                                                      : SLOTCATALOG_LOCATOR_SLOT;
    for (; records.size() >= sizeof(SlotCatalogRecord);
         records = records.subspan(sizeof(SlotCatalogRecord))) {
        const PcieRecord record = ReadRecord(records.first(sizeof(SlotCatalogRecord)));
        if (record.slotNumber != entry.slotNumber || record.locatorType != locator) {
            continue;
        }
        VANTRIC_LOG(LOG_LEVEL_TRACE, "DID = 0x%04X, SVID = 0x%04X, VID = 0x%04X, SDID = 0x%04X\n",
                    record.identity.deviceId, record.identity.subVendorId, record.identity.vendorId,
                    record.identity.subDeviceId);
        if (auto device = Accept(record, entry)) {
            return device;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<DeviceDetails> getDevicePCIeIDsForSlot(const EndPointEntry& entry) {
    std::uint32_t groupCount = 0;
    std::uint32_t recordCapacity = 0;
    std::uint32_t reserved = 0;
    std::uint8_t error =
        SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &groupCount, &recordCapacity, &reserved);
    if (error != 0 || groupCount == 0 || recordCapacity == 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "SlotCatalogDeviceInfo() failed error = %d\n", error);
        return std::nullopt;
    }
    const std::uint32_t bufferRecords = std::min(recordCapacity, mostRecords);
    std::vector<std::uint8_t> buffer(bufferRecords * sizeof(SlotCatalogRecord));
    for (std::uint32_t group = 0; group < groupCount; ++group) {
        std::uint8_t recordCount = 0;
        std::uint32_t capacity = bufferRecords;
        error = SlotCatalogDeviceData(SLOTCATALOG_ALL, group, &recordCount, &capacity,
                                      buffer.data(), bufferRecords);
        if (error != 0 || recordCount == 0 || capacity == 0) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "SlotCatalogDeviceData() failed error = %d\n", error);
            return std::nullopt;
        }
        const std::size_t records = std::min<std::size_t>(recordCount, bufferRecords);
        const std::span<const std::uint8_t> filled =
            std::span(buffer).first(records * sizeof(SlotCatalogRecord));
        if (auto found = SearchGroup(filled, entry)) {
            return found;
        }
    }
    return std::nullopt;
}

} // namespace vantric
