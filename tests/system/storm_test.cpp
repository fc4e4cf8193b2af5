/** Two hundred things that can happen to a server, in no order. */
#include "system/storm.hpp"

#include "support/eventually.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

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

/** Every object's path, with the value of a sensor. What an inventory read once, such as the FRU,
 * is as old as that inventory, and the numbering tells the order in which devices came. */
std::map<std::string, std::string> PathsAndValues(const PublishedObjects& objects) {
    std::map<std::string, std::string> values;
    for (const auto& [path, interfaces] : objects) {
        const auto value = interfaces.find("xyz.openbmc_project.Sensor.Value");
        values[path] = value == interfaces.end() ? "" : value->second.at("Value");
    }
    return values;
}

TEST(Storm, LeavesNothingBehind) {
    const int seed = Number("STORM_SEED", 20261125);
    SCOPED_TRACE("STORM_SEED=" + std::to_string(seed));
    std::printf("seed %d\n", seed);
    PlayedServer server(Storm::Scenario(), logErrors);
    Storm storm(server, static_cast<unsigned>(seed));
    ASSERT_TRUE(storm.Calm(true)) << server.Log();
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
    const auto stormed = PathsAndValues(server.Objects());
    EXPECT_GT(stormed.size(), 20U) << "at least four cards";
    server.RestartDaemon();
    std::map<std::string, std::string> fresh;
    Eventually([&] { return (fresh = PathsAndValues(server.Objects())) == stormed; });
    std::vector<std::pair<std::string, std::string>> difference;
    std::ranges::set_symmetric_difference(stormed, fresh, std::back_inserter(difference));
    EXPECT_TRUE(difference.empty()) << testing::PrintToString(difference) << storm.History();
}

} // namespace
} // namespace vantric::test
