// SPDX-License-Identifier: Apache-2.0
#include "slotcatalog.h"

#include "connection.hpp"
#include "payload.hpp"

#include <algorithm>
#include <cstdlib>

namespace {

using simulator_link::Frame;
using simulator_link::FrameKind;
using simulator_link::PayloadReader;
using simulator_link::PayloadWriter;

constexpr std::size_t acceleratorEntrySize = 232;

/** The result byte where the table can't be reached. */
constexpr uint8_t failed = 1;

} // namespace

uint8_t SlotCatalogDeviceInfo(uint32_t selector, uint32_t* groupCount, uint32_t* recordCapacity,
                              uint32_t* reserved) {
    Frame question;
    question.kind = FrameKind::CatalogInfo;
    question.payload = PayloadWriter().Write(selector).Finish();
    const auto answer = simulator_link::AskOnce(question);
    if (!answer || groupCount == nullptr || recordCapacity == nullptr || reserved == nullptr) {
        return failed;
    }
    PayloadReader reader(*answer);
    *groupCount = reader.Read<uint32_t>();
    *recordCapacity = reader.Read<uint32_t>();
    *reserved = reader.Read<uint32_t>();
    return reader.Truncated() ? failed : 0;
}

uint8_t SlotCatalogDeviceData(uint32_t selector, uint32_t group, uint8_t* recordCount,
                              uint32_t* capacity, void* records, uint32_t recordsCapacity) {
    Frame question;
    question.kind = FrameKind::CatalogData;
    question.payload = PayloadWriter().Write(selector).Write(group).Finish();
    const auto answer = simulator_link::AskOnce(question);
    if (!answer || recordCount == nullptr || capacity == nullptr || records == nullptr) {
        return failed;
    }
    const std::size_t fitting = std::min<std::size_t>(
        {answer->size() / sizeof(SlotCatalogRecord), recordsCapacity, UINT8_MAX});
    std::copy_n(answer->begin(), fitting * sizeof(SlotCatalogRecord),
                static_cast<uint8_t*>(records));
    *recordCount = static_cast<uint8_t>(fitting);
    *capacity = static_cast<uint32_t>(fitting);
    return 0;
}

uint16_t SlotCatalogAllDevices(void** entries) {
    if (entries == nullptr) {
        return 0;
    }
    *entries = nullptr;
    Frame question;
    question.kind = FrameKind::CatalogAll;
    const auto answer = simulator_link::AskOnce(question);
    if (!answer) {
        return 0;
    }
    const std::size_t count =
        std::min<std::size_t>(answer->size() / acceleratorEntrySize, UINT16_MAX);
    if (count == 0) {
        return 0;
    }
    *entries = std::malloc(count * acceleratorEntrySize);
    if (*entries == nullptr) {
        return 0;
    }
    std::copy_n(answer->begin(), count * acceleratorEntrySize, static_cast<uint8_t*>(*entries));
    return static_cast<uint16_t>(count);
}
