#include "pldm_cmds/multipart_assembly.hpp"

#include "pldm_cmds/limits.hpp"
#include "pldm_cmds/pldm_codes.hpp"

#include <utility>

namespace vantric {

MultipartAssembly::Step MultipartAssembly::Take(std::uint8_t transferFlag,
                                                std::span<const std::uint8_t> part) {
    exchanges += 1;
    if (exchanges > limits::operationExchanges) {
        return Step::TOO_LONG;
    }
    switch (transferFlag) {
    case TRANSFER_START:
    case TRANSFER_MIDDLE:
        return Append(part) ? Step::MORE_TO_COME : Step::TOO_LONG;
    case TRANSFER_START_AND_END:
        object.clear();
        [[fallthrough]];
    case TRANSFER_LAST:
    case TRANSFER_END:
        return Append(part) ? Step::COMPLETE : Step::TOO_LONG;
    default:
        meaningless += 1;
        return meaningless < limits::meaninglessFlags ? Step::NO_MEANING : Step::TOO_LONG;
    }
}

std::vector<std::uint8_t> MultipartAssembly::Finish() {
    return std::exchange(object, {});
}

bool MultipartAssembly::Append(std::span<const std::uint8_t> part) {
    meaningless = 0;
    total += part.size();
    object.insert(object.end(), part.begin(), part.end());
    return object.size() <= objectLimit && total <= limits::operationSize;
}

} // namespace vantric
