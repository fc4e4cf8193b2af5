/** Two hundred things that can happen to a server, in no order. */
#include "system/storm.hpp"

#include "support/eventually.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define WITH_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define WITH_SANITIZER 1
#endif
#endif

namespace vantric::test {
namespace {

#ifdef WITH_SANITIZER
constexpr int eventCount = 60; ///< everything takes three times as long
constexpr bool memoryTells = false;
#else
constexpr int eventCount = 200;
constexpr bool memoryTells = true;
#endif

constexpr int warmUpEvents = 60;
constexpr int lastEvents = 30; ///< which leave some cards pulled
constexpr int logErrors = 1;
constexpr long toleranceKilobytes = 1024;

/** A number from the environment, for runs by hand. */
int Number(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

/** What of a process is in memory. */
long ResidentKilobytes(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string key; status >> key;) {
        if (long kilobytes = 0; key == "VmRSS:" && status >> kilobytes) {
            return kilobytes;
        }
    }
    return 0;
}

/** What each object says, but for what tells of the past: what an inventory read once, thresholds
 *  and alarms since an object began, the order in which sensors came and controllers fell ill. */
std::map<std::string, std::string> Told(const PublishedObjects& objects) {
    static const std::set<std::string> past{"CriticalAlarmHigh", "CriticalHigh", "DeviceStatus",
                                            "FirmwareVersion",   "Instance",     "ProbeThresholds",
                                            "WarningAlarmHigh"};
    std::map<std::string, std::string> told;
    for (const auto& [path, interfaces] : objects) {
        for (const auto& [interface, properties] : interfaces) {
            if (interface.ends_with(".FRU")) {
                continue;
            }
            told[path + " " + interface];
            for (const auto& [name, value] : properties) {
                if (!past.contains(name)) {
                    told[path + " " + name] = value;
                }
            }
        }
    }
    return told;
}

/** As Storm::Implied(), and the types that show no OCP card where one is. */
std::map<std::string, std::ptrdiff_t> Counted(const PublishedObjects& objects) {
    std::map<std::string, std::ptrdiff_t> counts;
    for (const auto& [path, interfaces] : objects) {
        const auto name = path.rfind('/') + 1;
        if (const auto end = path.find("sensorid_"); path.find("/sensors/") != std::string::npos) {
            ++counts[path.substr(name, end - name)];
            const auto thermal = interfaces.find("com.korv.bmc.Thermal.ThermalSensor");
            if (path.substr(name, 8) == "NIC_Slot" && thermal != interfaces.end() &&
                thermal->second.at("SensorType").ends_with(".NIC_ASIC\"")) {
                ++counts["NIC_ASIC"];
            }
        } else if (path.find("/networkcontroller_") == std::string::npos) {
            ++counts["cards"];
        }
    }
    return counts;
}

TEST(Storm, LeavesNothingBehind) {
    const int seed = Number("STORM_SEED", 20261125);
    SCOPED_TRACE("STORM_SEED=" + std::to_string(seed));
    std::printf("seed %d\n", seed);
    PlayedServer server(Storm::Scenario(), logErrors);
    Storm storm(server, static_cast<unsigned>(seed));
    ASSERT_TRUE(storm.Calm(true)) << server.Log();
    EXPECT_EQ(storm.Implied(), Counted(server.Objects()));
    storm.Blow(warmUpEvents);
    ASSERT_TRUE(storm.Calm(true)) << storm.History() << server.Log();
    const long before = ResidentKilobytes(server.Daemon().Id());

    storm.Blow(Number("STORM_EVENTS", eventCount));
    ASSERT_TRUE(storm.Calm(true)) << storm.History() << server.Log();
    ASSERT_TRUE(server.Daemon().Runs());
    const long after = ResidentKilobytes(server.Daemon().Id());
    std::printf("%ld kB before, %ld kB after\n", before, after);
    EXPECT_TRUE(!memoryTells || after <= before + toleranceKilobytes)
        << before << " kB before, " << after << " kB after";

    storm.Blow(lastEvents);
    ASSERT_TRUE(storm.Calm(false)) << storm.History() << server.Log();
    // A daemon that has seen nothing of it says what the last table implies.
    const auto stormed = Told(server.Objects());
    EXPECT_EQ(storm.Implied(), Counted(server.Objects())) << storm.History();
    server.RestartDaemon();
    std::map<std::string, std::string> fresh;
    Eventually([&] { return (fresh = Told(server.Objects())) == stormed; });
    std::vector<std::pair<std::string, std::string>> difference;
    std::ranges::set_symmetric_difference(stormed, fresh, std::back_inserter(difference));
    EXPECT_TRUE(difference.empty()) << testing::PrintToString(difference) << storm.History();
}

} // namespace
} // namespace vantric::test
