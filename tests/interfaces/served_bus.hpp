// SPDX-License-Identifier: Apache-2.0
/** A private bus with a service of this process and a client beside it. */
#pragma once

#include "support/bus_client.hpp"
#include "support/private_bus.hpp"

#include <sdbusplus/bus.hpp>

#include <gtest/gtest.h>

namespace vantric::test {

/** Every test starts with an empty service called "test.Service". */
class ServedBus : public testing::Test {
protected:
    static constexpr auto service = "test.Service";

    ServedBus() {
        client.Serve(connection);
        bus.request_name(service);
    }

    static sd_bus* Open() {
        sd_bus* opened = nullptr;
        EXPECT_LE(0, sd_bus_open_system(&opened));
        return opened;
    }

    PrivateBus daemon;
    sd_bus* connection = Open();
    sdbusplus::bus_t bus{connection, std::false_type()};
    BusClient client;
};

} // namespace vantric::test
