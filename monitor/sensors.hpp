// SPDX-License-Identifier: Apache-2.0
/** What the objects of sensors say. */
#pragma once

#include "card.hpp"
#include "object_model.hpp"

#include <string>
#include <vector>

namespace monitor {

/** Where the paths of state sensors go on below what they are about. */
inline constexpr const char* stateFolder = "/sensor/state/";

/** Reads an object with the value interface, the probe interface or both. */
Sensor ReadSensor(const std::string& path, const Object& object);

/** Reads the members of a state sensor; one without members gives one row without a state. */
std::vector<State> ReadStates(const std::string& path, const Object& object);

} // namespace monitor
