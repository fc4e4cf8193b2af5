// SPDX-License-Identifier: Apache-2.0
#include "system/simulator_process.hpp"

#include "control/command.hpp"
#include "support/eventually.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace vantric::test {

SimulatorProcess::SimulatorProcess(const std::string& scenario) {
    setenv("SIMULATOR_SOCKET", (folder.path / "socket").c_str(), 1);
    Start(scenario);
}

SimulatorProcess::~SimulatorProcess() {
    unsetenv("SIMULATOR_SOCKET");
}

void SimulatorProcess::Start(const std::string& scenario) {
    const auto file = folder.Write("scenario.yaml", scenario);
    const auto log = folder.Write("log", "");
    process.emplace(std::vector<std::string>{SIMULATOR_PROGRAM, file},
                    std::map<std::string, std::string>{}, log);
    // It says one line when it listens.
    Eventually([this] { return !process->Log().empty() || !process->Runs(); });
    if (!process->Runs()) {
        throw std::runtime_error("the simulator doesn't start: " + process->Log());
    }
}

std::string SimulatorProcess::Control(const std::vector<std::string>& words) {
    const auto outcome = simulator::Command(words);
    EXPECT_TRUE(outcome.good) << outcome.text;
    return outcome.text;
}

std::vector<std::string> WordsOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> std::quoted(word);) {
        words.push_back(word);
    }
    return words;
}

} // namespace vantric::test
