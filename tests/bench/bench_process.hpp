/** A bench that runs beside the test. */
#pragma once

#include "bench/scenario_file.hpp"

#include <string>
#include <vector>

#include <sys/types.h>

namespace test {

/** How a program ended and what it said. */
struct Outcome {
    int status = -1; /**< exit status, -1 if it was ended by a signal */
    std::string output;
    std::string errors;
};

/** Runs a program to its end. */
Outcome RunProgram(const std::vector<std::string>& words);

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
    /** Ends it with SIGTERM and returns its exit status, or -1. */
    int Stop();
    /** Ends it as a crash would. */
    void Kill();

    /** Runs benchctl. */
    Outcome Control(const std::vector<std::string>& words) const;

    const std::string& Socket() const { return socket; }

private:
    int End(int signal);

    TemporaryFolder folder;
    std::string scenarioPath;
    std::string socket;
    pid_t process = -1;
};

} // namespace test
