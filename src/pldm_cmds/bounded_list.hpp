// SPDX-License-Identifier: Apache-2.0
/** Lists of records that stay short whatever a card sends. */
#pragma once

#include "common/log.hpp"
#include "records/limits.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace vantric {

/** Appends a record. A full list takes no more, and says once that it is full. */
template <typename Record>
void AppendBounded(std::vector<std::shared_ptr<Record>>& records, std::shared_ptr<Record> record) {
    if (records.size() == limits::recordsOfKind) {
        return;
    }
    records.push_back(std::move(record));
    if (records.size() == limits::recordsOfKind) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "No more than %d records of one kind are kept\n",
                    static_cast<int>(limits::recordsOfKind));
    }
}

} // namespace vantric
