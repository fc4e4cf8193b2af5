/* SPDX-License-Identifier: Apache-2.0 */
/* Platform PCIe table: what stands in each slot, and the table of known accelerators.
 *
 * The calls may be made from any thread. Capacities count records. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Selector that asks for all groups. */
#define SLOTCATALOG_ALL 0xFFFFFFFFu

/* Values of SlotCatalogRecord.locatorType. */
enum { SLOTCATALOG_LOCATOR_EMBEDDED = 2, SLOTCATALOG_LOCATOR_SLOT = 6 };

#pragma pack(push, 1)
/* One PCIe device. */
struct SlotCatalogRecord {
    uint8_t unused0[5];
    uint16_t vendorId;
    uint16_t deviceId;
    uint8_t unused9[40];
    uint16_t subVendorId;
    uint16_t subDeviceId;
    uint8_t unused53[17];
    uint8_t locatorType;
    uint8_t unused71[10];
    uint16_t slotNumber;
    uint8_t unused83[2];
    uint8_t deviceClass;
    uint8_t unused86[4];
    uint8_t cpuAffinity;
    uint8_t unused91[7];
};
#pragma pack(pop)

/* Tells how many groups there are and how many records a group can have. Returns 0 on success. */
uint8_t SlotCatalogDeviceInfo(uint32_t selector, uint32_t* groupCount, uint32_t* recordCapacity,
                              uint32_t* reserved);

/* Fills records with one group's records. capacity is in and out; recordsCapacity is the size of
 * the buffer. recordCount receives the number of records written. Returns 0 on success. */
uint8_t SlotCatalogDeviceData(uint32_t selector, uint32_t group, uint8_t* recordCount,
                              uint32_t* capacity, void* records, uint32_t recordsCapacity);

/* Returns the number of entries of the accelerator table. *entries comes from malloc and is freed
 * by the caller; it is null where the result is 0. */
uint16_t SlotCatalogAllDevices(void** entries);

#ifdef __cplusplus
}

static_assert(offsetof(SlotCatalogRecord, vendorId) == 5);
static_assert(offsetof(SlotCatalogRecord, deviceId) == 7);
static_assert(offsetof(SlotCatalogRecord, subVendorId) == 49);
static_assert(offsetof(SlotCatalogRecord, subDeviceId) == 51);
static_assert(offsetof(SlotCatalogRecord, locatorType) == 70);
static_assert(offsetof(SlotCatalogRecord, slotNumber) == 81);
static_assert(offsetof(SlotCatalogRecord, deviceClass) == 85);
static_assert(offsetof(SlotCatalogRecord, cpuAffinity) == 90);
static_assert(sizeof(SlotCatalogRecord) == 98);
#endif
