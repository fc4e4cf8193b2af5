// SPDX-License-Identifier: Apache-2.0
/** The platform's accelerator table, played: the including file defines SlotCatalogAllDevices. */
#pragma once

#include "pldm_cmds/bytes.hpp"

#include <slotcatalog.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace vantric::test {

/** One entry. The default is the card of the tests. */
struct SctRow {
    std::uint32_t type = 22;
    std::array<std::uint16_t, 4> identity{0x1002, 0x1234, 0x1003, 0x4321}; ///< in their order there
    std::array<std::uint16_t, 4> sensorIds{405, 30, 31, 1};

    Bytes Build() const {
        Bytes entry;
        entry.Add(type).AddZeros(56);
        for (const auto id : identity) {
            entry.Add(id);
        }
        entry.AddZeros(46);
        for (const auto id : sensorIds) {
            entry.Add(id);
        }
        return entry.AddZeros(110);
    }
};

struct PlayedSct {
    std::vector<SctRow> rows{};
    bool withoutBuffer = false;  ///< a count, but no entries
    bool withoutEntries = false; ///< entries, but a count of 0
    int calls = 0;

    std::uint16_t Answer(void** entries) {
        ++calls;
        Bytes table;
        for (const auto& row : rows) {
            table.Add(row.Build());
        }
        // Just as large as the count says, so that a look past it shows up.
        *entries = withoutBuffer ? nullptr : std::malloc(std::max<std::size_t>(table.size(), 1));
        if (*entries != nullptr) {
            std::ranges::copy(table, static_cast<std::uint8_t*>(*entries));
        }
        return withoutEntries ? 0 : static_cast<std::uint16_t>(rows.size());
    }
};

inline PlayedSct sctTable;

} // namespace vantric::test
