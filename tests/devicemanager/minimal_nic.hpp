/** Network devices without cards: real ones but for their work.
 *
 * minimal_nic.cpp takes the place of the class NicDevice in an executable that is linked with it.
 * An inventory and a monitor cycle keep the device as long as the test wants, and succeed. */
#pragma once

#include "device/device.hpp"

#include <cstdint>
#include <functional>
#include <vector>

namespace vantric::test {

/** One inventory or monitor cycle, while it keeps the device. */
struct NicStep {
    std::uint16_t slot = 0;
    std::vector<std::uint16_t> eids; ///< in the order of the controllers
    bool inventory = false;
    const Device& device;
};

/** Runs hook in every step from now on, on the device's thread; an empty one ends it. */
void OnStep(std::function<void(const NicStep&)> hook);

} // namespace vantric::test
