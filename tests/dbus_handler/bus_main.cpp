/** The main thread of the tests that publish: it owns the bus side, as the daemon's does. */
#include "dbus_handler/dbus_handler.hpp"
#include "support/private_bus.hpp"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const vantric::test::PrivateBus bus;
    vantric::DBusHandler::instance();
    return RUN_ALL_TESTS();
}
