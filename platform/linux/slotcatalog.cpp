// SPDX-License-Identifier: Apache-2.0
/** The PCIe table from the board file. */
#include "slotcatalog.h"

#include "board_file.hpp"
#include "byte_order.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

using board::LittleEndian;

constexpr uint8_t failed = 1;
constexpr std::size_t recordsPerGroup = UINT8_MAX;

#pragma pack(push, 1)
/** An entry of the accelerators' table. */
struct AcceleratorRecord {
    uint32_t entryType;
    uint8_t unused4[56];
    uint16_t vendorId;
    uint16_t deviceId;
    uint16_t subVendorId;
    uint16_t subDeviceId;
    uint8_t unused68[46];
    uint16_t sensorIds[4];
    uint8_t unused122[110];
};
#pragma pack(pop)
static_assert(offsetof(AcceleratorRecord, vendorId) == 60);
static_assert(offsetof(AcceleratorRecord, sensorIds) == 114);
static_assert(sizeof(AcceleratorRecord) == 232);

constexpr uint32_t acceleratorEntry = 22;

/** The board as its file was when it was first asked for. libmctplink, which comes first, tells of
 *  the mistakes in the file. */
const board::Board& TheBoard() {
    static const board::Board board = board::ReadBoardFile(board::BoardFilePath()).board;
    return board;
}

SlotCatalogRecord RecordOf(const board::SlotDevice& device) {
    SlotCatalogRecord record{};
    record.vendorId = LittleEndian(device.ids.vendor);
    record.deviceId = LittleEndian(device.ids.device);
    record.subVendorId = LittleEndian(device.ids.subVendor);
    record.subDeviceId = LittleEndian(device.ids.subDevice);
    record.locatorType = device.embedded ? SLOTCATALOG_LOCATOR_EMBEDDED : SLOTCATALOG_LOCATOR_SLOT;
    record.slotNumber = LittleEndian(device.slot);
    record.deviceClass = device.deviceClass;
    record.cpuAffinity = device.cpuAffinity;
    return record;
}

/** Fields of sensors that the board doesn't name repeat the last one: 0 is a sensor's id, too. */
AcceleratorRecord RecordOf(const board::Accelerator& accelerator) {
    AcceleratorRecord record{};
    record.entryType = LittleEndian(acceleratorEntry);
    record.vendorId = LittleEndian(accelerator.ids.vendor);
    record.deviceId = LittleEndian(accelerator.ids.device);
    record.subVendorId = LittleEndian(accelerator.ids.subVendor);
    record.subDeviceId = LittleEndian(accelerator.ids.subDevice);
    for (std::size_t i = 0; i < std::size(record.sensorIds); ++i) {
        record.sensorIds[i] =
            LittleEndian(accelerator.sensors[std::min(i, accelerator.sensors.size() - 1)]);
    }
    return record;
}

} // namespace

uint8_t SlotCatalogDeviceInfo(uint32_t /*selector*/, uint32_t* groupCount, uint32_t* recordCapacity,
                              uint32_t* reserved) {
    if (groupCount == nullptr || recordCapacity == nullptr || reserved == nullptr) {
        return failed;
    }
    const std::size_t slots = TheBoard().slots.size();
    *groupCount = static_cast<uint32_t>((slots + recordsPerGroup - 1) / recordsPerGroup);
    *recordCapacity = recordsPerGroup;
    *reserved = 0;
    return 0;
}

uint8_t SlotCatalogDeviceData(uint32_t /*selector*/, uint32_t group, uint8_t* recordCount,
                              uint32_t* capacity, void* records, uint32_t recordsCapacity) {
    const auto& slots = TheBoard().slots;
    const std::size_t first = group * recordsPerGroup;
    if (recordCount == nullptr || capacity == nullptr || records == nullptr ||
        first >= slots.size()) {
        return failed;
    }
    const std::size_t count =
        std::min<std::size_t>({slots.size() - first, recordsPerGroup, recordsCapacity});
    auto* to = static_cast<uint8_t*>(records);
    for (std::size_t i = 0; i < count; ++i) {
        const SlotCatalogRecord record = RecordOf(slots[first + i]);
        std::memcpy(to + i * sizeof(record), &record, sizeof(record));
    }
    *recordCount = static_cast<uint8_t>(count);
    *capacity = static_cast<uint32_t>(count);
    return 0;
}

uint16_t SlotCatalogAllDevices(void** entries) {
    if (entries == nullptr) {
        return 0;
    }
    *entries = nullptr;
    const auto& accelerators = TheBoard().accelerators;
    const std::size_t count = std::min<std::size_t>(accelerators.size(), UINT16_MAX);
    auto* const table =
        static_cast<uint8_t*>(count != 0 ? std::calloc(count, sizeof(AcceleratorRecord)) : nullptr);
    if (table == nullptr) {
        return 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const AcceleratorRecord record = RecordOf(accelerators[i]);
        std::memcpy(table + i * sizeof(record), &record, sizeof(record));
    }
    *entries = table;
    return static_cast<uint16_t>(count);
}
