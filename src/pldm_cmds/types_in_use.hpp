/** The PLDM types that this requester speaks, and from which version on. */
#pragma once

#include "pldm_cmds/pldm_codes.hpp"

#include <array>
#include <cstdint>
#include <optional>

namespace vantric {

/** In the order in which an endpoint is asked about them. */
inline constexpr std::array<std::uint8_t, 4> typesInUse{PLDM_BASE, PLDM_PLATFORM, PLDM_FRU,
                                                        PLDM_FW_UPDATE};

/** The lowest version, as a ver32 word, that is selected; nothing for a type not in use. */
constexpr std::optional<std::uint32_t> MinimumVersion(std::uint8_t type) {
    switch (type) {
    case PLDM_BASE:
        return 0xF1F1F000; // 1.1.0
    case PLDM_PLATFORM:
        return 0xF1F2F200; // 1.2.2
    case PLDM_FRU:
        return 0xF1F0F100; // 1.0.1
    case PLDM_FW_UPDATE:
        return 0xF1F2F000; // 1.2.0
    default:
        return std::nullopt;
    }
}

} // namespace vantric
