#include "simulator/simulator_process.hpp"

#include "support/eventually.hpp"

#include <csignal>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace vantric::test {

Outcome RunSimulator(const std::string& scenarioPath) {
    return RunToEnd({std::getenv("SIMULATOR_PROGRAM"), scenarioPath}, {});
}

SimulatorProcess::SimulatorProcess(const std::string& scenario)
    : scenarioPath(folder.Write("scenario.yaml", scenario)), socket(folder.path / "socket") {
    setenv("SIMULATOR_SOCKET", socket.c_str(), 1);
    Start();
}

SimulatorProcess::~SimulatorProcess() {
    unsetenv("SIMULATOR_SOCKET");
}

void SimulatorProcess::Start() {
    const auto log = folder.Write("log", "");
    process.emplace(std::vector<std::string>{std::getenv("SIMULATOR_PROGRAM"), scenarioPath},
                    std::map<std::string, std::string>{}, log);
    // It says one line when it listens.
    Eventually([this] { return !process->Log().empty() || !process->Runs(); });
    if (!process->Runs()) {
        throw std::runtime_error("the simulator didn't start: " + process->Log());
    }
}

std::optional<int> SimulatorProcess::Stop() {
    process->Signal(SIGTERM);
    return process->WaitForEnd();
}

void SimulatorProcess::Kill() {
    process.reset();
}

Outcome SimulatorProcess::Control(const std::string& command) const {
    std::istringstream words(command);
    std::vector<std::string> all{std::getenv("SIMCTL_PROGRAM")};
    for (std::string word; words >> std::quoted(word);) {
        all.push_back(word);
    }
    return RunToEnd(all, {});
}

} // namespace vantric::test
