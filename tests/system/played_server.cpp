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
    StartBench(scenario);
    StartDaemon();
    client = std::make_unique<BusClient>();
}

std::map<std::string, std::string> PlayedServer::BenchEnvironment() const {
    return {{"BENCH_SOCKET", bus->Folder() + "/bench"}};
}

void PlayedServer::StartBench(const std::string& scenario) {
    const std::string file = bus->Folder() + "/scenario.yaml";
    std::ofstream(file) << scenario;
    bench =
        std::make_unique<Process>(std::vector<std::string>{BENCH_PROGRAM, "--trace", Trace(), file},
                                  BenchEnvironment(), bus->Folder() + "/bench.log");
    const std::string socket = bus->Folder() + "/bench";
    Eventually([&] { return access(socket.c_str(), F_OK) == 0 || !bench->Runs(); });
    if (!bench->Runs()) {
        throw std::runtime_error("the bench doesn't start: " + bench->Log());
    }
}

void PlayedServer::RestartBench(const std::string& scenario) {
    bench.reset();
    std::filesystem::remove(bus->Folder() + "/bench"); // tells that the new one listens
    StartBench(scenario);
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
    auto environment = BenchEnvironment();
    environment["TRACELOG_LEVEL"] = std::to_string(logLevel);
    environment["TEST_CLOCK_SCALE"] = clockScale;
    daemon = std::make_unique<Process>(std::vector<std::string>{DAEMON_PROGRAM}, environment,
                                       bus->Folder() + "/daemon.log");
}

std::string PlayedServer::Benchctl(const std::vector<std::string>& words) const {
    std::vector<std::string> command{BENCHCTL_PROGRAM};
    command.insert(command.end(), words.begin(), words.end());
    return Run(command, BenchEnvironment());
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
    const std::ifstream file(std::string(BENCH_SCENARIOS) + "/" + name);
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
