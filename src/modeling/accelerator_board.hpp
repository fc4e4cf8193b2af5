// SPDX-License-Identifier: Apache-2.0
/** The baseboard whose one endpoint speaks for eight accelerators and for the board itself: all
 * that is special about it. Which of its sensors are shown stands with the other classes of cards,
 * in sensor_choice.hpp. */
#pragma once

#include "modeling/entity_tree.hpp"
#include "publisher/requests.hpp"
#include "vocabulary/ldid.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vantric::accelerator_board {

/** Slots of the accelerators, as the platform counts them. */
inline constexpr std::array<std::uint8_t, 8> slots{21, 22, 23, 24, 25, 26, 27, 28};

/** Whether the identity is that of such a board. */
bool IsBoard(const PciIdentity& identity);

/** An inventory object besides the endpoint's own. */
struct InventoryObject {
    Ldid ldid;
    std::string path;
};

/** Those of the board itself and of each accelerator, in this order. */
std::vector<InventoryObject> InventoryObjects();

/** The requests by which a numeric sensor of a node is shown: one for each accelerator for the
 *  sensor that they share; else one where the sensor's own name tells which part of the system it
 *  stands for, or none.
 *  @param request holds the sensor */
std::vector<SensorInsertRequest> PlaceNumericSensor(SensorInsertRequest request,
                                                    const PDRTree& node);

/** Moves a state sensor of the card or of a logical accelerator to the part of the system that it
 *  stands for: state path, second LDID and, for an accelerator, instance 0. */
void VirtualStateSensorPath(StateSensorRequest& request);

/** The tail of the path under which an accelerator shows the shared sensor. */
std::string SharedSensorKey(std::uint8_t slot);

} // namespace vantric::accelerator_board
