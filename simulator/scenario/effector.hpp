// SPDX-License-Identifier: Apache-2.0
/** Described effectors. */
#pragma once

#include "scenario/entity.hpp"

#include <optional>

namespace simulator {

struct NumericEffector {
    std::uint16_t id = 0;
    EntityId entity;
    std::uint16_t semantic = 0;
    std::uint8_t unit = 2;
    std::int8_t modifier = 0;
    std::uint8_t dataSize = 2;
    std::uint8_t rangeFormat = 2;
    float resolution = 1.0F;
    float offset = 0.0F;
    double least = 0.0; /**< in the effector's unit */
    double most = 100.0;
    std::optional<double> initial; /**< adds an initialization record */
};

struct StateEffector {
    struct Member {
        std::uint16_t stateSet = 1;
        std::vector<std::uint8_t> possibleStates;
    };
    std::uint16_t id = 0;
    EntityId entity;
    std::uint16_t semantic = 0;
    std::vector<Member> members;
    std::optional<std::uint8_t> initial; /**< adds an initialization record with this state */
};

} // namespace simulator
