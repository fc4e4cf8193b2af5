#include "bench/bench_process.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace test {

namespace {

std::string Program(const char* variable) {
    const char* const path = std::getenv(variable);
    if (path == nullptr) {
        throw std::runtime_error(std::string(variable) + " isn't set");
    }
    return path;
}

/** A pipe whose ends are closed one by one. */
struct Pipe {
    Pipe() {
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("pipe2");
        }
    }
    ~Pipe() {
        Close(0);
        Close(1);
    }
    void Close(std::size_t end) {
        if (ends[end] >= 0) {
            close(std::exchange(ends[end], -1));
        }
    }
    std::array<int, 2> ends{-1, -1};
};

/** Starts a program with descriptors for its output and its errors, -1 for the test's own. */
pid_t Spawn(const std::vector<std::string>& words, int output, int errors) {
    std::vector<char*> arguments;
    for (const auto& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    if (errors >= 0) {
        posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    }
    pid_t process = -1;
    const int result =
        posix_spawn(&process, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (result != 0) {
        throw std::runtime_error("can't start " + words.front());
    }
    return process;
}

std::string ReadAll(int descriptor) {
    std::string text;
    std::array<char, 4096> piece{};
    ssize_t count = 0;
    while ((count = read(descriptor, piece.data(), piece.size())) > 0) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

int WaitFor(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

Outcome RunProgram(const std::vector<std::string>& words) {
    Pipe output;
    Pipe errors;
    const auto process = Spawn(words, output.ends[1], errors.ends[1]);
    output.Close(1);
    errors.Close(1);
    Outcome outcome;
    // Both texts are short enough for a pipe, so one can wait for the other.
    outcome.output = ReadAll(output.ends[0]);
    outcome.errors = ReadAll(errors.ends[0]);
    outcome.status = WaitFor(process);
    return outcome;
}

BenchProcess::BenchProcess(const std::string& scenario)
    : scenarioPath(folder.Write("scenario.yaml", scenario)), socket(folder.path / "socket") {
    setenv("BENCH_SOCKET", socket.c_str(), 1);
    Start();
}

BenchProcess::~BenchProcess() {
    if (process >= 0) {
        End(SIGKILL);
    }
    unsetenv("BENCH_SOCKET");
}

void BenchProcess::Start() {
    Pipe output;
    process = Spawn({Program("BENCH_PROGRAM"), scenarioPath}, output.ends[1], -1);
    output.Close(1);
    // It says one line when it listens; the end of the pipe means that it has died.
    char first = 0;
    if (read(output.ends[0], &first, 1) != 1) {
        throw std::runtime_error("the bench didn't start");
    }
}

int BenchProcess::Stop() {
    return End(SIGTERM);
}

void BenchProcess::Kill() {
    End(SIGKILL);
}

int BenchProcess::End(int signal) {
    kill(process, signal);
    return WaitFor(std::exchange(process, -1));
}

Outcome BenchProcess::Control(const std::vector<std::string>& words) const {
    std::vector<std::string> all{Program("BENCHCTL_PROGRAM")};
    all.insert(all.end(), words.begin(), words.end());
    return RunProgram(all);
}

} // namespace test
