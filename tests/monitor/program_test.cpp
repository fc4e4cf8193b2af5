// SPDX-License-Identifier: Apache-2.0
/** The program as a user starts it. */
#include "monitor/interface_names.hpp"
#include "support/eventually.hpp"
#include "support/private_bus.hpp"
#include "support/process.hpp"

#include <com/korv/zenth/Sensor/ProbeObj/server.hpp>

#include <sdbusplus/bus.hpp>
#include <sdbusplus/server/manager.hpp>

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using vantric::test::Process;
using ProbeObj = sdbusplus::server::com::korv::zenth::sensor::ProbeObj;

constexpr const char* root = "/xyz/openbmc_project/sensors";
constexpr const char* sensor = "/xyz/openbmc_project/sensors/power/NIC_Slot_3_sensorid_6";

/** The service, with one power sensor of 12 W. */
class Service {
public:
    Service() {
        bus.request_name(monitor::serviceName);
        Publish();
    }

    void Publish() {
        probe = std::make_unique<ProbeObj>(
            bus, sensor,
            std::map<std::string, ProbeObj::PropertiesVariant>{
                {"ProbeLocation", std::string("Board power")}, {"ProbeReading", std::int32_t{12}}});
        bus.emit_interfaces_added(sensor, {ProbeObj::interface});
    }

    void Withdraw() {
        bus.emit_interfaces_removed(sensor, {ProbeObj::interface});
        probe.reset();
    }

    /** Answers calls until done() holds. Returns false if it never does. */
    bool ServeUntil(const std::function<bool()>& done) const {
        return vantric::test::Eventually([&] {
            while (sd_bus_process(connection, nullptr) > 0) {
            }
            return done();
        });
    }

    /** Serves until the program has shown the text since it was asked last. */
    bool ServeUntilShown(Process& program, const std::string& text) {
        return ServeUntil([&] {
            const std::size_t found = program.Log().find(text, seen);
            seen = found == std::string::npos ? seen : found + text.size();
            return found != std::string::npos;
        });
    }

    static sd_bus* Open() {
        sd_bus* bus = nullptr;
        EXPECT_LE(0, sd_bus_open_system(&bus));
        return bus;
    }

    sd_bus* connection = Open();
    sdbusplus::bus_t bus{connection, std::false_type()};
    sdbusplus::server::manager_t sensors{bus, root};
    std::unique_ptr<ProbeObj> probe;
    std::size_t seen = 0;
};

class ProgramTest : public testing::Test {
protected:
    /** Starts the monitor, with an output of its own. */
    Process Start(std::vector<std::string> command) {
        command.insert(command.begin(), std::getenv("MONITOR"));
        return {command, {}, privateBus.Folder() + "/monitor." + std::to_string(++started)};
    }

    vantric::test::PrivateBus privateBus;
    int started = 0;
};

TEST_F(ProgramTest, FollowsWhatIsPublishedUntilASignal) {
    std::optional<Service> service(std::in_place);
    Process once = Start({"--json", "--card", "slot_3"});
    EXPECT_TRUE(service->ServeUntil([&] { return !once.Runs(); }));
    EXPECT_EQ(once.WaitForEnd(), 0);
    EXPECT_THAT(once.Log(), HasSubstr("\"value\": 12.0"));

    Process live = Start({});
    EXPECT_TRUE(service->ServeUntilShown(live, "Board power         12 W"));
    service->probe->probeReading(345);
    EXPECT_TRUE(service->ServeUntilShown(live, "Board power        345 W"));
    sd_bus_emit_signal(service->connection, root, "org.freedesktop.DBus.ObjectManager",
                       "InterfacesAdded", "u", 7U);
    EXPECT_TRUE(service->ServeUntilShown(live, "1 not understood"));
    service->Withdraw();
    EXPECT_TRUE(service->ServeUntilShown(live, "0 cards"));
    service->Publish();
    EXPECT_TRUE(service->ServeUntilShown(live, "Board power         12 W"));
    service.reset();
    service.emplace();
    EXPECT_TRUE(service->ServeUntilShown(live, "Board power         12 W"));
    live.Signal(SIGINT);
    EXPECT_EQ(live.WaitForEnd(), 0);
}

TEST_F(ProgramTest, SaysInOneLineWhyItEnds) {
    Process alone = Start({"--once"});
    EXPECT_EQ(alone.WaitForEnd(), 1);
    EXPECT_EQ(alone.Log(),
              "vantric-monitor: com.korv.zenth.vantricd isn't on the bus; start vantricd\n");

    Process wrong = Start({"--what"});
    EXPECT_EQ(wrong.WaitForEnd(), 2);
    EXPECT_EQ(wrong.Log(), "vantric-monitor: unknown option --what; vantric-monitor --help tells "
                           "the options\n");

    Process version = Start({"--version"});
    EXPECT_EQ(version.WaitForEnd(), 0);
    EXPECT_THAT(version.Log(), MatchesRegex("vantric-monitor [0-9]+\\.[0-9]+\\.[0-9]+\n"));

    Process lost = Start({});
    EXPECT_TRUE(vantric::test::Eventually([&] { return !lost.Log().empty(); }));
    kill(privateBus.Process(), SIGKILL);
    EXPECT_EQ(lost.WaitForEnd(), 1);
    EXPECT_THAT(lost.Log(), HasSubstr("\nvantric-monitor: the connection to the bus is lost"));

    Process without = Start({"--once"});
    EXPECT_EQ(without.WaitForEnd(), 1);
    EXPECT_THAT(without.Log(),
                MatchesRegex("vantric-monitor: there is no system bus \\([^\n]+\\); start dbus, "
                             "or set DBUS_SYSTEM_BUS_ADDRESS to its address\n"));
}

} // namespace
