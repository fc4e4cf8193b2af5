#include "bench/bench_process.hpp"

#include "support/eventually.hpp"

#include <csignal>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace vantric::test {

Outcome RunBench(const std::string& scenarioPath) {
    return RunToEnd({std::getenv("BENCH_PROGRAM"), scenarioPath}, {});
}

BenchProcess::BenchProcess(const std::string& scenario)
    : scenarioPath(folder.Write("scenario.yaml", scenario)), socket(folder.path / "socket") {
    setenv("BENCH_SOCKET", socket.c_str(), 1);
    Start();
}

BenchProcess::~BenchProcess() {
    unsetenv("BENCH_SOCKET");
}

void BenchProcess::Start() {
    const auto log = folder.Write("log", "");
    process.emplace(std::vector<std::string>{std::getenv("BENCH_PROGRAM"), scenarioPath},
                    std::map<std::string, std::string>{}, log);
    // It says one line when it listens.
    Eventually([this] { return !process->Log().empty() || !process->Runs(); });
    if (!process->Runs()) {
        throw std::runtime_error("the bench didn't start: " + process->Log());
    }
}

std::optional<int> BenchProcess::Stop() {
    process->Signal(SIGTERM);
    return process->WaitForEnd();
}

void BenchProcess::Kill() {
    process.reset();
}

Outcome BenchProcess::Control(const std::string& command) const {
    std::istringstream words(command);
    std::vector<std::string> all{std::getenv("BENCHCTL_PROGRAM")};
    for (std::string word; words >> std::quoted(word);) {
        all.push_back(word);
    }
    return RunToEnd(all, {});
}

} // namespace vantric::test
