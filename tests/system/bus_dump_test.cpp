// SPDX-License-Identifier: Apache-2.0
/** Each scenario makes the objects that its .bus file tells of, and no others. */
#include "support/eventually.hpp"
#include "system/bus_dump.hpp"
#include "system/played_server.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace vantric::test {
namespace {

/** The names of the scenarios, but for the storm's, which is made to change. */
std::vector<std::string> Scenarios() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(ScenarioFolder())) {
        if (file.path().extension() == ".yaml" && file.path().stem() != "storm") {
            names.push_back(file.path().stem());
        }
    }
    return names;
}

class Scenario : public testing::TestWithParam<std::string> {};

TEST_P(Scenario, StandsOnTheBusAsItsFileSays) {
    const BusDump dump(ScenarioFolder() + '/' + GetParam() + ".bus");
    PlayedServer server(ReadScenario(GetParam() + ".yaml"), 1);
    std::string difference;
    const auto same = [&] { return (difference = dump.Difference(server.Client())).empty(); };
    EXPECT_TRUE(Eventually([&] { return same() || !server.Daemon().Runs(); })) << difference;
    // And stays so while the devices go on.
    const auto answered = [&server] {
        int sum = 0;
        for (const auto& [eid, count] : server.Answered()) {
            sum += count;
        }
        return sum;
    };
    const int before = answered();
    EXPECT_TRUE(Eventually([&] { return answered() > 2 * before; }));
    EXPECT_TRUE(same()) << difference;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Scenario, testing::ValuesIn(Scenarios()), [](const auto& info) {
    auto name = info.param;
    std::erase(name, '-');
    return name;
});

} // namespace
} // namespace vantric::test
