// SPDX-License-Identifier: Apache-2.0
/** The process's hold on the bus: its name, and what happens when the bus goes. Every test runs the
 *  bus side in a process of its own, as a lost bus ends it. */
#include "common/process_flags.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "support/bus_client.hpp"
#include "support/private_bus.hpp"
#include "support/process.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include <sys/socket.h>
#include <unistd.h>

namespace vantric::test {

namespace {

constexpr auto serviceName = "com.korv.zenth.vantricd";

/** The unique name of the service's owner; empty if there is none. */
std::string Owner(BusClient& client) {
    const auto answer = client.Call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                    "org.freedesktop.DBus", "GetNameOwner", serviceName);
    return answer.error.empty() ? answer.text : "";
}

bool WaitUntilDbusReady() {
    std::unique_lock lock(dbusReadyMutex);
    return dbusReadyCond.wait_for(lock, BusClient::patience, [] { return dbusReady; });
}

TEST(Connection, EndsTheProcessWhenOnlyTheSignalsAreLost) {
    const PrivateBus bus;
    Process child([] {
        std::thread([] {
            WaitUntilDbusReady();
            int latest = -1; // the second connection's socket
            for (int fd = 3; fd < 64; ++fd) {
                sockaddr_storage peer{};
                socklen_t length = sizeof peer;
                if (getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &length) == 0) {
                    latest = fd;
                }
            }
            shutdown(latest, SHUT_RDWR);
        }).detach();
        return DBusHandler::instance().Run();
    });
    EXPECT_EQ(EXIT_FAILURE, child.WaitForEnd());
}

TEST(Connection, LosesItsNameToALaterProcess) {
    const PrivateBus bus;
    BusClient client;
    Process first([] { return DBusHandler::instance().Run(); });
    std::string firstOwner;
    ASSERT_TRUE(client.WaitUntil([&] { return !(firstOwner = Owner(client)).empty(); }));
    Process second([] { return DBusHandler::instance().Run(); });
    EXPECT_TRUE(client.WaitUntil([&] { return Owner(client) != firstOwner; }));
    EXPECT_TRUE(first.Runs());
    EXPECT_TRUE(second.Runs());
}

TEST(Connection, DoesWithoutAName) {
    const PrivateBus bus;
    BusClient holder;
    holder.Call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "RequestName", serviceName, std::uint32_t{0});
    Process child([] {
        std::thread([] {
            // The process goes on and hears signals, though it has no name.
            std::_Exit(WaitUntilDbusReady() ? 7 : 8);
        }).detach();
        return DBusHandler::instance().Run();
    });
    EXPECT_EQ(7, child.WaitForEnd());
}

TEST(Connection, EndsTheProcessWithoutABus) {
    Process child([] {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
        return DBusHandler::instance().Run();
    });
    EXPECT_EQ(EXIT_FAILURE, child.WaitForEnd());
}

} // namespace

} // namespace vantric::test
