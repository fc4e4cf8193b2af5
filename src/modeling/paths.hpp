/** The pieces of which object paths and names are made. */
#pragma once

#include "modeling/pdr_tree.hpp"
#include "vocabulary/sensor_tag.hpp"

#include <cstddef>
#include <cstdint>
#include <string>

namespace vantric {

/** The longest inventory path, in bytes, under which sensors are published. No honest card comes
 * near it; one that nests its entities without end can't make every path grow with the depth. */
inline constexpr std::size_t longestPath = 4096;

/** The word of a supported entity type, "" for any other. */
const std::string& EntityWord(std::uint16_t entityType);

/** Where an entity stands on its card, such as "/networkcontroller_1/ethernet_2": a piece for the
 *  node and each node above it that is another entity than its parent. The card itself (an add-in
 *  card or a system management module), what holds it, and the top node have no piece. Empty for
 *  nullptr. Gives up the climb once the result is longer than longestPath. */
std::string NodePath(const PDRTree* node);

/** The number behind the first "connector_" of a path, modulo 256; 0 if there is none. */
std::uint8_t ConnectorNumber(const std::string& path);

/** The piece of an inventory path for a controller: the second, or the first for every other
 * number.
 */
std::string ControllerPiece(std::uint8_t controller);

/** The object path of a numeric sensor. */
std::string SensorPath(const __Sensor& sensor, const std::string& ldid, ControllerTag tag);

} // namespace vantric
