/** A simulator that runs beside the test. */
#pragma once

#include "support/temporary_folder.hpp"
#include "system/process.hpp"

#include <optional>
#include <string>

namespace vantric::test {

/** Runs the simulator with the scenario in a file to its end. */
Outcome RunSimulator(const std::string& scenarioPath);

/** The simulator as a process, with SIMULATOR_SOCKET set for this process and its children. The
 *  programs are the ones that SIMULATOR_PROGRAM and SIMCTL_PROGRAM name. One at a time. */
class SimulatorProcess {
public:
    /** Starts it with a scenario and returns when it listens. */
    explicit SimulatorProcess(const std::string& scenario);
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;
    ~SimulatorProcess();

    /** Starts it again after Stop or Kill. */
    void Start();
    /** Ends it with SIGTERM and returns its exit status. */
    std::optional<int> Stop();
    /** Ends it as a crash would. */
    void Kill();

    /** Runs simctl with the words of a command; a word may stand in quotes. */
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
