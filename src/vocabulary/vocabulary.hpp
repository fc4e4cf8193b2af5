// SPDX-License-Identifier: Apache-2.0
/** The words for the numbers that devices send: they stand in D-Bus paths, names and values.
 *
 * Constants that are there before main and are read from every thread without a lock. Numbers are
 * the entity type and state set codes of DSP0249; the words are this daemon's own and are compared
 * letter for letter. */
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace vantric {

/** PLDM entity type to word. A type without a word isn't supported. */
extern const std::map<std::uint16_t, std::string> entityWords;

/** PLDM state set id to the set's name. */
extern const std::map<std::uint16_t, std::string> stateSetNames;

/** Name of a state set to the texts of its states. */
extern const std::map<std::string, std::map<std::uint8_t, std::string>> stateValueNames;

/** State of the "Health State" set to the severity of a device's DeviceStatus, 2 (good) to 5. */
extern const std::map<std::string, std::uint8_t> healthSeverity;

} // namespace vantric
