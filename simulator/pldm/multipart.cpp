// SPDX-License-Identifier: Apache-2.0
#include "pldm/multipart.hpp"

#include <algorithm>

namespace simulator {

std::optional<Part> CutPart(std::span<const std::uint8_t> whole, std::uint32_t handle,
                            std::uint8_t operation, const Multipart& parts, std::size_t limit) {
    const std::size_t offset = operation == getFirstPart ? 0 : handle;
    if (operation != getFirstPart && (offset == 0 || offset >= whole.size())) {
        return std::nullopt;
    }
    std::size_t size = parts.partSize.value_or(whole.size());
    size = limit == 0 ? size : std::min(size, limit);
    Part part;
    part.data = whole.subspan(offset).first(std::min(size, whole.size() - offset));
    part.last = offset + part.data.size() == whole.size();
    part.nextHandle = part.last ? 0 : static_cast<std::uint32_t>(offset + part.data.size());
    if (offset == 0) {
        part.flag = part.last ? wholeAnswer : parts.flags[0];
    } else {
        part.flag = part.last ? parts.flags[2] : parts.flags[1];
    }
    return part;
}

} // namespace simulator
