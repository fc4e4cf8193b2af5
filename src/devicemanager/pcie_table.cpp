#include "devicemanager/pcie_table.hpp"

#include "common/byte_reader.hpp"
#include "common/log.hpp"
#include "devicemanager/end_point_entry.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/ldid.hpp"

#include <slotcatalog.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace vantric {

namespace {

constexpr int libraryFailed = 1;
constexpr int noUsableRecord = 7;

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

/** Class and LDID of the device that a record describes; nothing if it isn't one to serve. */
std::optional<PcieDevice> Accept(const PcieRecord& record, std::uint16_t slot, std::uint8_t epType,
                                 std::uint8_t slotType) {
    PcieDevice device{.deviceType = record.deviceClass,
                      .identity = record.identity,
                      .cpuAffinity = record.cpuAffinity,
                      .ldid = {}};
    if (slotType == SLOT_TYPE_EMBEDDED) {
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
        if (epType != END_POINT_TYPE_ACCELERATOR) {
            return std::nullopt;
        }
        device.ldid += "-1";
    }
    return device;
}

/** The first record of a group that leads to a device. */
std::optional<PcieDevice> SearchGroup(std::span<const std::uint8_t> records, std::uint16_t slot,
                                      std::uint8_t epType, std::uint8_t slotType) {
    const std::uint8_t locator =
        slotType == SLOT_TYPE_EMBEDDED ? SLOTCATALOG_LOCATOR_EMBEDDED : SLOTCATALOG_LOCATOR_SLOT;
    for (; records.size() >= sizeof(SlotCatalogRecord);
         records = records.subspan(sizeof(SlotCatalogRecord))) {
        const PcieRecord record = ReadRecord(records.first(sizeof(SlotCatalogRecord)));
        if (record.slotNumber != slot || record.locatorType != locator) {
            continue;
        }
        VANTRIC_LOG(LOG_LEVEL_TRACE, "DID = 0x%04X, SVID = 0x%04X, VID = 0x%04X, SDID = 0x%04X\n",
                    record.identity.deviceId, record.identity.subVendorId, record.identity.vendorId,
                    record.identity.subDeviceId);
        if (auto device = Accept(record, slot, epType, slotType)) {
            return device;
        }
    }
    return std::nullopt;
}

} // namespace

int getDevicePCIeIDsForSlot(std::uint16_t slot, std::uint8_t epType, std::uint8_t slotType,
                            PcieDevice& device) {
    std::uint32_t groupCount = 0;
    std::uint32_t recordCapacity = 0;
    std::uint32_t reserved = 0;
    std::uint8_t error =
        SlotCatalogDeviceInfo(SLOTCATALOG_ALL, &groupCount, &recordCapacity, &reserved);
    if (error != 0 || groupCount == 0 || recordCapacity == 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "SlotCatalogDeviceInfo() failed error = %d\n", error);
        return libraryFailed;
    }
    // A group's count is one byte, so a larger buffer than that would never be filled.
    const std::uint32_t bufferRecords =
        std::min<std::uint32_t>(recordCapacity, std::numeric_limits<std::uint8_t>::max());
    std::vector<std::uint8_t> buffer(bufferRecords * sizeof(SlotCatalogRecord));
    for (std::uint32_t group = 0; group < groupCount; ++group) {
        std::uint8_t recordCount = 0;
        std::uint32_t capacity = bufferRecords;
        error = SlotCatalogDeviceData(SLOTCATALOG_ALL, group, &recordCount, &capacity,
                                      buffer.data(), bufferRecords);
        if (error != 0 || recordCount == 0 || capacity == 0) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "SlotCatalogDeviceData() failed error = %d\n", error);
            return libraryFailed;
        }
        const std::size_t records = std::min<std::size_t>(recordCount, bufferRecords);
        const std::span<const std::uint8_t> filled =
            std::span(buffer).first(records * sizeof(SlotCatalogRecord));
        if (const auto found = SearchGroup(filled, slot, epType, slotType)) {
            device = *found;
            return 0;
        }
    }
    return noUsableRecord;
}

} // namespace vantric
