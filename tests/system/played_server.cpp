#include "system/played_server.hpp"

#include "support/eventually.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <unistd.h>

namespace vantric::test {

namespace {

constexpr auto clockScale = "0.02";
constexpr auto sensorsRoot = "/xyz/openbmc_project/sensors";
constexpr auto inventoryRoot = "/xyz/openbmc_project/inventory/system";

} // namespace

PlayedServer::PlayedServer(const std::string& scenario, int logLevel)
    : logLevel(logLevel), bus(std::make_unique<PrivateBus>()) {
    StartSimulator(scenario);
    StartDaemon();
    client = std::make_unique<BusClient>();
}

std::map<std::string, std::string> PlayedServer::SimulatorEnvironment() const {
    return {{"SIMULATOR_SOCKET", bus->Folder() + "/simulator"}};
}

void PlayedServer::StartSimulator(const std::string& scenario) {
    const std::string file = bus->Folder() + "/scenario.yaml";
    std::ofstream(file) << scenario;
    simulator = std::make_unique<Process>(
        std::vector<std::string>{SIMULATOR_PROGRAM, "--trace", Trace(), file},
        SimulatorEnvironment(), bus->Folder() + "/simulator.log");
    const std::string socket = bus->Folder() + "/simulator";
    Eventually([&] { return access(socket.c_str(), F_OK) == 0 || !simulator->Runs(); });
    if (!simulator->Runs()) {
        throw std::runtime_error("the simulator doesn't start: " + simulator->Log());
    }
}

void PlayedServer::RestartSimulator(const std::string& scenario) {
    simulator.reset();
    std::filesystem::remove(bus->Folder() + "/simulator"); // tells that the new one listens
    StartSimulator(scenario);
}

std::string PlayedServer::Trace() const {
    return bus->Folder() + "/trace";
}

int PlayedServer::Answered(int eid, const std::string& bytes) const {
    std::ifstream trace(Trace());
    int count = 0;
    std::string line;
    while (std::getline(trace, line)) {
        std::istringstream words(line);
        std::string time;
        std::string request;
        int from = 0;
        words >> time >> from >> request;
        count += from == eid && request.compare(2, bytes.size(), bytes) == 0 ? 1 : 0;
    }
    return count;
}

void PlayedServer::RestartDaemon() {
    daemon.reset();
    StartDaemon();
}

void PlayedServer::StartDaemon() {
    auto environment = SimulatorEnvironment();
    environment["TRACELOG_LEVEL"] = std::to_string(logLevel);
    environment["TEST_CLOCK_SCALE"] = clockScale;
    daemon = std::make_unique<Process>(std::vector<std::string>{DAEMON_PROGRAM}, environment,
                                       bus->Folder() + "/daemon.log");
}

std::string PlayedServer::Simctl(const std::vector<std::string>& words) const {
    std::vector<std::string> command{SIMCTL_PROGRAM};
    command.insert(command.end(), words.begin(), words.end());
    return Run(command, SimulatorEnvironment());
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

bool PlayedServer::WaitForObjects(const std::function<bool(const PublishedObjects&)>& done) {
    PublishedObjects objects;
    bool held = false;
    Eventually([&] {
        objects = Objects();
        held = done(objects);
        return held || !daemon->Runs();
    });
    if (!held) {
        ADD_FAILURE() << "on the bus: " << testing::PrintToString(Paths(objects))
                      << "\ndaemon: " << daemon->Log();
    }
    return held;
}

bool PlayedServer::WaitForProperty(const std::string& path, const std::string& interface,
                                   const std::string& property, const std::string& text) {
    std::string last = "no such object";
    const bool held = WaitForObjects([&](const PublishedObjects& objects) {
        const auto object = objects.find(path);
        if (object == objects.end() || !object->second.contains(interface)) {
            return false;
        }
        last = object->second.at(interface).at(property);
        return last == text;
    });
    EXPECT_EQ(last, text) << path << ' ' << property;
    return held;
}

bool PlayedServer::WaitForLog(const std::string& text, int times) {
    const auto held = [&] { return CountOf(daemon->Log(), text) >= times; };
    Eventually([&] { return held() || !daemon->Runs(); });
    if (!held()) {
        ADD_FAILURE() << "not in the log: " << text << '\n' << daemon->Log();
        return false;
    }
    return true;
}

int CountOf(const std::string& text, const std::string& piece) {
    int count = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

std::string ReadScenario(const std::string& name) {
    const std::ifstream file(std::string(SIMULATOR_SCENARIOS) + "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    EXPECT_FALSE(text.str().empty()) << name;
    return text.str();
}

std::vector<std::string> Paths(const PublishedObjects& objects) {
    std::vector<std::string> paths;
    for (const auto& [path, interfaces] : objects) {
        paths.push_back(path);
    }
    return paths;
}

} // namespace vantric::test
