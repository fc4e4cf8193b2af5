// SPDX-License-Identifier: Apache-2.0
/** mctpd's objects, as GetManagedObjects tells of them. */
#pragma once

#include "mctpd.hpp"

#include <string_view>

namespace mctplink {

/** Whether an object is one of those on which the endpoints depend. */
bool BearsOnEndpoints(std::string_view path);

/** Reads the answer to GetManagedObjects: the endpoints that speak PLDM (DSP0239 type 1), without
 *  the board's own, ordered by address. Objects and properties of other kinds are ignored. Empty if
 *  the answer has another form. */
std::optional<std::vector<Endpoint>> ReadEndpoints(sd_bus_message* reply);

} // namespace mctplink
