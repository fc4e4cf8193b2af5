// SPDX-License-Identifier: Apache-2.0
/** What other services of the platform are asked for. */
#pragma once

#include "publisher/publisher.hpp"

#include <cstdint>
#include <string>

namespace vantric {

/** What the path of a card's FRU object begins with; the slot follows. */
inline constexpr const char* fruPath = "/xyz/openbmc_project/inventory/system/assembly/PCIESLOT";

/** Asks the entity manager for a property of the card in the slot. Returns an empty string if it
 *  isn't to be had. Blocks for as long as the bus's time-out at worst; any thread. */
std::string getFRUPropertyVal(std::uint8_t slot, const std::string& name);

/** Tells whether the model of the card in the slot says OCP; blocks, like getFRUPropertyVal. */
bool IsOcpCard(std::uint8_t slot);

/** The address service of the bus. */
class BusUdidReader final : public UdidReader {
public:
    std::string getUDIDPropertyVal(std::uint8_t slot, std::uint8_t busAddress) const override;
};

} // namespace vantric
