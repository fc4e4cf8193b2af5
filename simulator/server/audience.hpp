// SPDX-License-Identifier: Apache-2.0
/** Whom the platform tells things. */
#pragma once

#include "machine/platform_tables.hpp"

#include <string>

namespace simulator {

/** The programs that have attached or subscribed. The numbers tell how many were reached. */
class Audience {
public:
    virtual ~Audience() = default;

    virtual std::size_t DeliverTable(TableFlaw flaw) = 0;
    virtual std::size_t AnnounceDiscovery() = 0;
    /** everybody: also those who subscribed to something else. */
    virtual std::size_t Notify(const std::string& name, bool everybody) = 0;
};

} // namespace simulator
