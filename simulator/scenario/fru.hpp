// SPDX-License-Identifier: Apache-2.0
/** Described FRU data. */
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace simulator {

struct FruField {
    std::uint8_t type = 0;
    std::vector<std::uint8_t> value;
};

struct FruRecord {
    std::uint16_t set = 1;
    std::uint8_t type = 1; /**< 1 general, 254 OEM */
    std::uint8_t encoding = 1;
    std::vector<FruField> fields;
    std::optional<std::uint8_t> fieldCount; /**< instead of the number of fields */
};

/** The FRU records of a terminus, or a whole table as bytes. */
struct Fru {
    std::vector<FruRecord> records;
    std::optional<std::vector<std::uint8_t>> rawTable;
};

} // namespace simulator
