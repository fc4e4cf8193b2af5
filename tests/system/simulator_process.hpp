// SPDX-License-Identifier: Apache-2.0
/** A simulator that runs beside the test. */
#pragma once

#include "support/process.hpp"
#include "support/temporary_folder.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vantric::test {

/** The simulator as a process, with SIMULATOR_SOCKET set for this process and its children. One at
 *  a time. */
class SimulatorProcess {
public:
    /** Starts it with the text of a scenario and returns when it listens. */
    explicit SimulatorProcess(const std::string& scenario);
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;
    ~SimulatorProcess();

    /** Starts it again after Kill, with any scenario. */
    void Start(const std::string& scenario);

    /** Ends it as a crash would. */
    void Kill() { process.reset(); }

    /** Has the simulator carry out a command and returns what it says. A command that fails is a
     *  failure of the test. */
    static std::string Control(const std::vector<std::string>& words);

private:
    TemporaryFolder folder;
    std::optional<Process> process;
};

/** The words of a text, which may stand in quotation marks. */
std::vector<std::string> WordsOf(const std::string& text);

} // namespace vantric::test
