// SPDX-License-Identifier: Apache-2.0
#include "pldm_cmds/multipart_assembly.hpp"

#include "pldm_cmds/pldm_codes.hpp"
#include "records/limits.hpp"

#include <utility>

namespace vantric {

MultipartAssembly::Step MultipartAssembly::Take(std::uint8_t transferFlag,
                                                std::span<const std::uint8_t> part) {
    exchanges += 1;
    idle += 1;
    Step step = Step::COMPLETE;
    switch (transferFlag) {
    case TRANSFER_START:
    case TRANSFER_MIDDLE:
        step = Step::MORE_TO_COME;
        break;
    case TRANSFER_START_AND_END:
        object.clear();
        break;
    case TRANSFER_LAST:
    case TRANSFER_END:
        break;
    default:
        step = Step::NO_MEANING;
    }
    if (step == Step::COMPLETE) {
        idle = 0; // an empty object is one, and others may come after it
    }
    const bool taken = step == Step::NO_MEANING || Append(part);
    const bool inBounds =
        exchanges <= limits::operationExchanges && idle < limits::idleResponses && taken;
    return inBounds ? step : Step::TOO_LONG;
}

std::vector<std::uint8_t> MultipartAssembly::Finish() {
    return std::exchange(object, {});
}

bool MultipartAssembly::Append(std::span<const std::uint8_t> part) {
    total += part.size();
    if (object.size() + part.size() > objectLimit || total > limits::operationSize) {
        return false;
    }
    object.insert(object.end(), part.begin(), part.end());
    idle = part.empty() ? idle : 0;
    return true;
}

} // namespace vantric
