// SPDX-License-Identifier: Apache-2.0
/** The main thread of the tests that publish: it owns the bus side, as the daemon's does, and has
 * the platform's signals listened to. */
#include "dbus_handler/dbus_handler.hpp"
#include "support/private_bus.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::optional<vantric::test::PrivateBus> bus(std::in_place);
    auto& handler = vantric::DBusHandler::instance();
    std::thread listener(&vantric::DBusHandler::RegisterForDBUSEvents, &handler);
    const int result = RUN_ALL_TESTS();
    bus.reset(); // the only thing that ends the listener
    listener.join();
    return result;
}
