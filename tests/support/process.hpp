// SPDX-License-Identifier: Apache-2.0
/** A child process of a test. */
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vantric::test {

/** A program with standard output and error in a file, or a copy of the test's own process. It ends
 *  with this object, and also when the test's thread dies. */
class Process {
public:
    /** Runs body in a copy of this process, which ends with its result and destroys nothing. */
    explicit Process(const std::function<int()>& body);

    /** @param command program and arguments
     *  @param environment added to the test's own
     *  @param log receives what the program writes */
    Process(const std::vector<std::string>& command,
            const std::map<std::string, std::string>& environment,
            const std::filesystem::path& log);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void Signal(int number) const;

    /** Waits up to 30 s for the end. Returns the exit status, or 128 and the signal's number;
     *  nothing if the program still runs then. */
    std::optional<int> WaitForEnd();

    /** True until the end has been seen. */
    bool Runs();

    pid_t Id() const { return process; }

    /** What the program has written so far. Only what is new is read: a long log is waited on. */
    const std::string& Log();

private:
    bool Reap(int options);

    pid_t process = -1;
    std::optional<int> status;
    std::filesystem::path log;
    std::string written;
};

} // namespace vantric::test
