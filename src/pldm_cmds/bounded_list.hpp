/** Lists that outlive a change of the repository. */
#pragma once

#include "pldm_cmds/limits.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace vantric {

/** Appends a record to a list that a re-read of the repository doesn't empty. A full list takes no
 *  more: an endpoint that claims a change at every look would otherwise make it grow for ever. */
template <typename Record>
void AppendBounded(std::vector<std::shared_ptr<Record>>& records, std::shared_ptr<Record> record) {
    if (records.size() < limits::recordsOfKind) {
        records.push_back(std::move(record));
    }
}

} // namespace vantric
