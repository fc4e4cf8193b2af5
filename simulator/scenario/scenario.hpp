// SPDX-License-Identifier: Apache-2.0
/** A whole scenario. */
#pragma once

#include "scenario/card.hpp"

namespace simulator {

struct Scenario {
    std::vector<Card> cards;
    std::vector<std::vector<std::uint8_t>> accelerators; /**< entries of the accelerator table */
    bool platformServices = false;
};

/** Reads a scenario. Throws ScenarioError. */
Scenario ReadScenario(const std::string& path);

} // namespace simulator
