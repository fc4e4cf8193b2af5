// SPDX-License-Identifier: Apache-2.0
/** The FRU record table. */
#pragma once

#include "pdr/record.hpp"

namespace simulator {

/** The table with its padding and its checksum (DSP0257). A raw table stands as it is. */
Bytes EncodeFruTable(const Fru& fru);

} // namespace simulator
