// SPDX-License-Identifier: Apache-2.0
/** The process's hold on the bus: its name, and what happens when the bus goes. Every test runs the
 *  bus side in a process of its own, as a lost bus ends it. */
#include "common/process_flags.hpp"
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/handlers.hpp"
#include "dbus_handler/platform_reads.hpp"
#include "support/bus_client.hpp"
#include "support/captured_log.hpp"
#include "support/eventually.hpp"
#include "support/private_bus.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantric::test {

namespace {

constexpr auto serviceName = "com.korv.zenth.vantricd";

/** A child process; it is killed if it hasn't ended by itself. */
class Child {
public:
    /** Runs body in the child, which exits with its result. */
    explicit Child(const std::function<int()>& body) : process(fork()) {
        if (process == 0) {
            std::_Exit(body());
        }
    }

    ~Child() {
        if (process > 0) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /** Waits for the end and returns the exit status; nothing if it takes too long or is a signal.
     */
    std::optional<int> Ends() {
        int status = 0;
        if (!Eventually([&] { return waitpid(process, &status, WNOHANG) == process; })) {
            return std::nullopt;
        }
        process = -1;
        return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
    }

    bool Runs() const { return kill(process, 0) == 0 && waitpid(process, nullptr, WNOHANG) == 0; }

private:
    pid_t process;
};

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
    Child child([] {
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
    EXPECT_EQ(EXIT_FAILURE, child.Ends());
}

TEST(Connection, LosesItsNameToALaterProcess) {
    const PrivateBus bus;
    BusClient client;
    Child first([] { return DBusHandler::instance().Run(); });
    std::string firstOwner;
    ASSERT_TRUE(client.WaitUntil([&] { return !(firstOwner = Owner(client)).empty(); }));
    Child second([] { return DBusHandler::instance().Run(); });
    EXPECT_TRUE(client.WaitUntil([&] { return Owner(client) != firstOwner; }));
    EXPECT_TRUE(first.Runs());
    EXPECT_TRUE(second.Runs());
}

TEST(Connection, DoesWithoutAName) {
    const PrivateBus bus;
    BusClient holder;
    holder.Call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                "RequestName", serviceName, std::uint32_t{0});
    Child child([] {
        std::thread([] {
            // The process goes on and hears signals, though nobody finds it.
            std::_Exit(WaitUntilDbusReady() ? 7 : 8);
        }).detach();
        return DBusHandler::instance().Run();
    });
    EXPECT_EQ(7, child.Ends());
}

TEST(Connection, DoesNotCrashWithoutABus) {
    Child child([] {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
        auto& handler = DBusHandler::instance();
        auto& objects = handler.Objects();
        SensorInsertRequest sensor;
        sensor.sensor.sensorKind = SENSOR_KIND_THERMAL_PROBE;
        sensor.objectPath = "/xyz/openbmc_project/sensors/temperature/a";
        objects.InsertSensor(sensor);
        const CapturedLog log;
        objects.UpdateControllerInventory({"/a", "NIC.Slot.3", 3, 1});
        if (!log.Lines().empty()) {
            return 0;
        }
        objects.SetSensorValue({});
        objects.Clear({"NIC.Slot.3", 0, CLEAR_ALL});
        objects.ForgetNumbering({});
        return BusUdidReader().getUDIDPropertyVal(3, 29).empty() ? handler.Run() + 10 : 0;
    });
    EXPECT_EQ(EXIT_FAILURE + 10, child.Ends());
}

} // namespace

} // namespace vantric::test
