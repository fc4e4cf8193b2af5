// SPDX-License-Identifier: Apache-2.0
#include "accelerator/sct.hpp"

#include "common/byte_reader.hpp"
#include "common/log.hpp"

#include <slotcatalog.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>

namespace vantric {

namespace {

// Fields of an entry, little-endian.
constexpr std::size_t entryTypeOffset = 0; // 32 bits; the others have 16
constexpr std::size_t vendorIdOffset = 60;
constexpr std::size_t deviceIdOffset = 62;
constexpr std::size_t subVendorIdOffset = 64;
constexpr std::size_t subDeviceIdOffset = 66;
constexpr std::array<std::size_t, 4> sensorIdOffsets{114, 116, 118, 120};

constexpr std::uint32_t acceleratorEntry = 22;

struct Free {
    void operator()(void* buffer) const { std::free(buffer); }
};

bool IsAccelerator(std::span<const std::uint8_t> entry, const PciIdentity& ids) {
    ByteReader reader(entry);
    return reader.At<std::uint32_t>(entryTypeOffset) == acceleratorEntry &&
           reader.At<std::uint16_t>(vendorIdOffset) == ids.vendorId &&
           reader.At<std::uint16_t>(deviceIdOffset) == ids.deviceId &&
           reader.At<std::uint16_t>(subVendorIdOffset) == ids.subVendorId &&
           reader.At<std::uint16_t>(subDeviceIdOffset) == ids.subDeviceId;
}

std::array<std::uint16_t, sensorIdOffsets.size()> SensorIds(std::span<const std::uint8_t> entry) {
    std::array<std::uint16_t, sensorIdOffsets.size()> ids{};
    std::ranges::transform(sensorIdOffsets, ids.begin(), [entry](std::size_t offset) {
        return ByteReader(entry).At<std::uint16_t>(offset);
    });
    return ids;
}

} // namespace

Sct& Sct::OfProcess() {
    static Sct table;
    return table;
}

void Sct::ReadOnce(const PciIdentity& ids) {
    const std::scoped_lock lock(sctMutex);
    if (sctRead) {
        return;
    }
    const int status = readSCT(ids);
    if (status != 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "SCT read failed with status: %d\n", status);
        return;
    }
    sctRead = true;
    printList();
}

bool Sct::IsSensorInSCT(std::uint16_t sensorId) const {
    const std::scoped_lock lock(sctMutex);
    if (sctGpuList.empty()) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "Current is null, cannot access its members\n");
        return false;
    }
    return std::ranges::any_of(sctGpuList, [sensorId](const Entry& entry) {
        const auto ids = SensorIds(entry);
        return std::ranges::find(ids, sensorId) != ids.end();
    });
}

int Sct::readSCT(const PciIdentity& ids) {
    void* entries = nullptr;
    sctEntryCount = SlotCatalogAllDevices(&entries);
    const std::unique_ptr<void, Free> buffer(entries);
    if (sctEntryCount == 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "NO PCI DEVICES are found in SCT\n");
        return 1;
    }
    if (!buffer) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "NO PCI DEVICES are found in SCT - pciesctDevices NULL\n");
        return 1;
    }
    sctAcceleratorCount = 0;
    ByteReader table({static_cast<const std::uint8_t*>(buffer.get()), sctEntryCount * entrySize});
    while (table.Remaining() > 0) {
        const auto entry = table.Take(entrySize);
        if (!IsAccelerator(entry, ids)) {
            continue;
        }
        if (addpciesctGPUdata(entry) != 0) {
            sctEntryCount = 0;
            sctAcceleratorCount = 0;
            return 1;
        }
        ++sctAcceleratorCount;
        break; // only the first one counts
    }
    sctEntryCount = 0;
    VANTRIC_LOG(LOG_LEVEL_TRACE, "Number of accelerator entry in SCT is %d\n", sctAcceleratorCount);
    return 0;
}

int Sct::addpciesctGPUdata(std::span<const std::uint8_t> entry) {
    if (entry.data() == nullptr) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "addpciesctGPUdata: rgpuData is NULL\n");
        return -1;
    }
    try {
        Entry& copy = sctGpuList.emplace_front();
        std::copy_n(entry.begin(), std::min(entry.size(), copy.size()), copy.begin());
    } catch (const std::bad_alloc& e) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "addpciesctGPUdata: Memory allocation failed - %s\n",
                    e.what());
        return -1;
    } catch (const std::exception& e) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "addpciesctGPUdata: Exception occurred - %s\n", e.what());
        return -1;
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "addpciesctGPUdata: Unknown exception occurred\n");
        return -1;
    }
    return 0;
}

void Sct::printList() const {
    for (const Entry& entry : sctGpuList) {
        for (const std::uint16_t sensorId : SensorIds(entry)) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Sensor entry in SCT with %d\n", sensorId);
        }
    }
}

} // namespace vantric
