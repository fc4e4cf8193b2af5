// SPDX-License-Identifier: Apache-2.0
#include "support/process.hpp"

#include "support/eventually.hpp"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantric::test {

namespace {

[[noreturn]] void BecomeProgram(const std::vector<std::string>& command,
                                const std::map<std::string, std::string>& environment,
                                const std::filesystem::path& log) {
    const int output = open(log.c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(127);
}

} // namespace

Process::Process(const std::function<int()>& body) {
    std::fflush(nullptr);
    process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::_Exit(body());
    }
}

Process::Process(const std::vector<std::string>& command,
                 const std::map<std::string, std::string>& environment,
                 const std::filesystem::path& log)
    : Process([&]() -> int { BecomeProgram(command, environment, log); }) {
    this->log = log;
}

Process::~Process() {
    if (Runs()) {
        Signal(SIGKILL);
        Reap(0);
    }
}

void Process::Signal(int number) const {
    kill(process, number);
}

bool Process::Reap(int options) {
    int raw = 0;
    if (!status && waitpid(process, &raw, options) == process) {
        status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    }
    return status.has_value();
}

bool Process::Runs() {
    return !Reap(WNOHANG);
}

std::optional<int> Process::WaitForEnd() {
    Eventually([this] { return !Runs(); });
    return status;
}

const std::string& Process::Log() {
    std::ifstream file(log);
    file.seekg(static_cast<std::streamoff>(written.size()));
    written.append(std::istreambuf_iterator<char>(file), {});
    return written;
}

} // namespace vantric::test
