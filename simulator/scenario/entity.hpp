// SPDX-License-Identifier: Apache-2.0
/** Entities and how they contain one another. */
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace simulator {

/** Identifies an entity (DSP0248). */
struct EntityId {
    std::uint16_t type = 0;
    std::uint16_t instance = 0;
    std::uint16_t container = 0; /**< id of the container that it lies in, 0 for none */
};

/** What one container holds. */
struct Association {
    std::uint16_t containerId = 0;
    bool logical = false;
    EntityId container;
    std::vector<EntityId> contained;
};

/** The entities of a terminus: its associations in the order in which they are described, and the
 *  entities that a scenario gave a name. */
struct EntityTree {
    std::vector<Association> associations;
    std::map<std::string, EntityId> named;
};

} // namespace simulator
