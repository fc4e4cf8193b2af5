// SPDX-License-Identifier: Apache-2.0
/** How object paths and names are made: the pieces, and the orders in which they stand. */
#pragma once

#include "modeling/entity_tree.hpp"
#include "vocabulary/sensor_tag.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace vantric {

/** The word of a supported entity type, "" for any other. */
const std::string& EntityWord(std::uint16_t entityType);

/** An entity's word and instance, such as "ethernet_2". */
std::string EntityName(std::uint16_t entityType, std::uint16_t instance);

/** Where an entity stands on its card, such as "/networkcontroller_1/ethernet_2": a piece for the
 *  node and each node above it that is another entity than its parent. The card itself (an add-in
 *  card or a system management module), what holds it, and the top node have no piece. Of the
 *  entity's nodes, the one that its own container holds counts; without one the result is empty. */
std::string EntityPath(const EntityTree& tree, const PDRTree& node);

/** What the inventory path of a node's sensors has after the device's. */
std::string NodePiece(const EntityTree& tree, const PDRTree& node);

/** What the path of a state sensor without a node has after the device's: the controller, which
 *  most connectors don't have above them. */
std::string PieceWithoutNode(std::uint16_t entityType, const Controller& controller);

/** The number after the first "connector_" of a path, modulo 256; 0 if there is none. */
std::uint8_t ConnectorNumber(std::string_view path);

/** The object path of a numeric sensor. */
std::string SensorPath(const __Sensor& sensor, std::string_view ldid, ControllerTag tag);

} // namespace vantric
