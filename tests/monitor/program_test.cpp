// SPDX-License-Identifier: Apache-2.0
/** The program as a user starts it. */
#include "support/eventually.hpp"
#include "support/private_bus.hpp"
#include "system/played_server.hpp"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>

namespace vantric::test {

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

/** Starts the monitor, with an output of its own. */
Process Monitor(const PrivateBus& bus, std::vector<std::string> command) {
    static int started = 0;
    command.insert(command.begin(), std::getenv("MONITOR"));
    return {command, {}, bus.Folder() + "/monitor." + std::to_string(++started)};
}

TEST(Monitor, FollowsWhatIsPublishedUntilASignal) {
    PlayedServer server(ReadScenario("cards.yaml"));
    server.See("power/NIC_Slot_3_sensorid_6 ProbeReading=22");
    Process once = Monitor(server.Bus(), {"--json", "--card", "slot 3"});
    EXPECT_EQ(once.WaitForEnd(), 0);
    EXPECT_THAT(once.Log(), HasSubstr("\"value\": 22.0"));

    Process live = Monitor(server.Bus(), {});
    std::size_t seen = 0;
    const auto shows = [&](const std::string& text) {
        return Eventually([&] {
            const std::size_t found = live.Log().find(text, seen);
            seen = found == std::string::npos ? seen : found + text.size();
            return found != std::string::npos;
        });
    };
    EXPECT_TRUE(shows(" 22 W"));
    server.Do("set 31 6 345");
    EXPECT_TRUE(shows(" 345 W"));
    server.Do("pull 3");
    EXPECT_TRUE(shows("6 cards"));
    server.Do("plug 3");
    // Another process takes the name, and tells what it likes.
    server.Client().Call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "RequestName", PlayedServer::serviceName, std::uint32_t{3});
    server.Client().Emit("/xyz/openbmc_project/sensors", "org.freedesktop.DBus.ObjectManager",
                         "InterfacesAdded", std::uint32_t{7});
    EXPECT_TRUE(shows("1 not understood"));
    server.RestartDaemon();
    EXPECT_TRUE(shows(" 345 W"));
    live.Signal(SIGINT);
    EXPECT_EQ(live.WaitForEnd(), 0);
}

TEST(Monitor, SaysInOneLineWhyItEnds) {
    const PrivateBus bus;
    Process alone = Monitor(bus, {"--once"});
    EXPECT_EQ(alone.WaitForEnd(), 1);
    EXPECT_EQ(alone.Log(),
              "vantric-monitor: com.korv.zenth.vantricd isn't on the bus; start vantricd\n");

    Process version = Monitor(bus, {"--version"});
    EXPECT_EQ(version.WaitForEnd(), 0);
    EXPECT_THAT(version.Log(), MatchesRegex("vantric-monitor [0-9]+\\.[0-9]+\\.[0-9]+\n"));

    Process lost = Monitor(bus, {});
    EXPECT_TRUE(Eventually([&] { return !lost.Log().empty(); }));
    kill(bus.Process(), SIGKILL);
    EXPECT_EQ(lost.WaitForEnd(), 1);
    EXPECT_THAT(lost.Log(), HasSubstr("\nvantric-monitor: the connection to the bus is lost"));

    Process without = Monitor(bus, {"--once"});
    EXPECT_EQ(without.WaitForEnd(), 1);
    EXPECT_THAT(without.Log(),
                MatchesRegex("vantric-monitor: there is no system bus \\([^\n]+\\); start dbus, "
                             "or set DBUS_SYSTEM_BUS_ADDRESS to its address\n"));
}

} // namespace

} // namespace vantric::test
