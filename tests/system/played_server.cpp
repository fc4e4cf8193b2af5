// SPDX-License-Identifier: Apache-2.0
#include "system/played_server.hpp"

#include "support/eventually.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vantric::test {

namespace {

constexpr auto clockScale = "0.02";
constexpr auto sensorsRoot = "/xyz/openbmc_project/sensors";
constexpr auto inventoryRoot = "/xyz/openbmc_project/inventory/system";

const Interfaces* Find(const PublishedObjects& objects, const std::string& path) {
    const auto found = std::ranges::find_if(
        objects, [&](const auto& object) { return object.first.ends_with('/' + path); });
    return found == objects.end() ? nullptr : &found->second;
}

/** The text of a property, without its quotation marks, or what is missing. */
std::string TextOf(const PublishedObjects& objects, const std::string& path,
                   const std::string& property) {
    const auto* interfaces = Find(objects, path);
    if (interfaces == nullptr) {
        return "no object";
    }
    for (const auto& [interface, properties] : *interfaces) {
        if (const auto found = properties.find(property); found != properties.end()) {
            const auto& text = found->second;
            return text.starts_with('"') ? text.substr(1, text.size() - 2) : text;
        }
    }
    return "no property";
}

} // namespace

PlayedServer::PlayedServer(const std::string& scenario, int logLevel)
    : logLevel(logLevel), bus(std::make_unique<PrivateBus>()),
      simulator(std::make_unique<SimulatorProcess>(scenario)) {
    StartDaemon();
    client = std::make_unique<BusClient>();
}

void PlayedServer::RestartSimulator(const std::string& scenario) {
    simulator->Kill();
    simulator->Start(scenario);
}

std::map<int, int> PlayedServer::Answered() const {
    std::map<int, int> answered;
    std::istringstream in(Simctl({"count"}));
    std::string skipped;
    for (int eid = 0; in >> skipped >> eid;) {
        in >> skipped >> answered[eid];
    }
    return answered;
}

void PlayedServer::RestartDaemon() {
    daemon.reset();
    StartDaemon();
}

void PlayedServer::StartDaemon() {
    daemon = std::make_unique<Process>(
        std::vector<std::string>{DAEMON_PROGRAM},
        std::map<std::string, std::string>{{"TRACELOG_LEVEL", std::to_string(logLevel)},
                                           {"TEST_CLOCK_SCALE", clockScale}},
        bus->Folder() + "/daemon.log");
}

std::string PlayedServer::Simctl(const std::vector<std::string>& words) const {
    return SimulatorProcess::Control(words);
}

PlayedServer& PlayedServer::Do(const std::string& command) {
    Simctl(WordsOf(command));
    return *this;
}

PlayedServer& PlayedServer::See(const std::string& shown) {
    const auto space = shown.find(' ');
    const auto equals = shown.find('=', space);
    const auto path = shown.substr(0, space);
    const auto property = shown.substr(space + 1, equals - space - 1);
    const auto text = shown.substr(equals + 1);
    Await(shown, [&] { return TextOf(Objects(), path, property) == text; });
    return *this;
}

PlayedServer& PlayedServer::Miss(const std::string& path) {
    Await("no " + path, [&] { return daemon->Runs() && Find(Objects(), path) == nullptr; });
    return *this;
}

PlayedServer& PlayedServer::Read(const std::string& text, int times) {
    Await(text, [&] { return CountOf(daemon->Log(), text) >= times; });
    return *this;
}

void PlayedServer::Await(const std::string& what, const std::function<bool()>& done) {
    Eventually([&] { return done() || !daemon->Runs(); });
    if (!done()) {
        throw std::runtime_error(what + " doesn't come; on the bus: " +
                                 testing::PrintToString(Objects()) + "\ndaemon: " + daemon->Log());
    }
}

PublishedObjects PlayedServer::Objects() {
    PublishedObjects objects;
    for (const char* root : {sensorsRoot, inventoryRoot}) {
        try {
            objects.merge(client->GetManagedObjects(serviceName, root));
        } catch (const std::runtime_error&) {
            return {}; // no daemon on the bus, now
        }
    }
    return objects;
}

int CountOf(const std::string& text, const std::string& piece) {
    int count = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

std::string ReadScenario(const std::string& name) {
    const std::ifstream file(SIMULATOR_SCENARIOS "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    EXPECT_FALSE(text.str().empty()) << name;
    return text.str();
}

} // namespace vantric::test
