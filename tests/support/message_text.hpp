// SPDX-License-Identifier: Apache-2.0
/** D-Bus messages as text, for a test to compare. */
#pragma once

#include <systemd/sd-bus.h>

#include <string>

namespace vantric::test {

/** Returns the values from the message's present place to the end of the container that it is in,
 *  joined by ", ", and moves there. Numbers are decimal, the shortest that give the value back;
 *  text and paths stand in quotes, arrays in [], dictionaries in {} with their keys in order,
 *  structures in (). A variant looks like what it holds.
 *  @throws std::runtime_error if sd-bus can't read the message. */
std::string MessageText(sd_bus_message* message);

/** Returns one value, the next one, in the same form. */
std::string ValueText(sd_bus_message* message);

} // namespace vantric::test
