/** A bench that runs beside the test. */
#pragma once

#include "support/temporary_folder.hpp"
#include "system/process.hpp"

#include <optional>
#include <string>

namespace vantric::test {

/** Runs the bench with the scenario in a file to its end. */
Outcome RunBench(const std::string& scenarioPath);

/** The bench as a process, with BENCH_SOCKET set for this process and its children. The programs
 *  are the ones that BENCH_PROGRAM and BENCHCTL_PROGRAM name. One at a time. */
class BenchProcess {
public:
    /** Starts it with a scenario and returns when it listens. */
    explicit BenchProcess(const std::string& scenario);
    BenchProcess(const BenchProcess&) = delete;
    BenchProcess& operator=(const BenchProcess&) = delete;
    ~BenchProcess();

    /** Starts it again after Stop or Kill. */
    void Start();
    /** Ends it with SIGTERM and returns its exit status. */
    std::optional<int> Stop();
    /** Ends it as a crash would. */
    void Kill();

    /** Runs benchctl with the words of a command; a word may stand in quotes. */
    Outcome Control(const std::string& command) const;

    const std::string& ScenarioPath() const { return scenarioPath; }
    const std::string& Socket() const { return socket; }

private:
    TemporaryFolder folder;
    std::string scenarioPath;
    std::string socket;
    std::optional<Process> process;
};

} // namespace vantric::test
