// SPDX-License-Identifier: Apache-2.0
/** Cards for scripts. */
#pragma once

#include "card.hpp"

#include <string>
#include <vector>

namespace monitor {

/** The cards as one JSON document, with a line end. docs/monitor.md tells the fields. */
std::string ToJson(const std::vector<Card>& cards);

} // namespace monitor
