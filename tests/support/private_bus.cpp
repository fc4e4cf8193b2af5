#include "support/private_bus.hpp"

#include <systemd/sd-bus.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vantric::test {

namespace {

constexpr auto addressVariable = "DBUS_SYSTEM_BUS_ADDRESS";

[[noreturn]] void ThrowErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void WriteConfig(const std::string& path, const std::string& folder) {
    std::ofstream(path) << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus "
                           "Configuration 1.0//EN\" \"http://www.freedesktop.org/standards/dbus/"
                           "1.0/busconfig.dtd\">\n"
                           "<busconfig>\n"
                           "  <type>session</type>\n"
                           "  <listen>unix:path="
                        << folder
                        << "/socket</listen>\n"
                           "  <auth>EXTERNAL</auth>\n"
                           "  <policy context=\"default\">\n"
                           "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
                           "    <allow eavesdrop=\"true\"/>\n"
                           "    <allow own=\"*\"/>\n"
                           "  </policy>\n"
                           "</busconfig>\n";
}

/** Becomes the daemon. Runs between fork and exec, so it only makes system calls. */
[[noreturn]] void BecomeDaemon(char* const* arguments, int addressFd, const char* log,
                               pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        _exit(1); // The parent was gone before the line above.
    }
    const int output = open(log, O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (output < 0 || dup2(output, STDERR_FILENO) < 0 || dup2(addressFd, STDOUT_FILENO) < 0) {
        _exit(1);
    }
    execvp(arguments[0], arguments);
    _exit(127);
}

void Check(const char* function, int result) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), function);
    }
}

/** Connects and waits until the daemon has answered. It tells its address before it is ready to be
 *  stopped in good order; once it answers, it is. */
void AwaitAnswer(const std::string& address) {
    sd_bus* raw = nullptr;
    Check("sd_bus_new", sd_bus_new(&raw));
    const std::unique_ptr<sd_bus, decltype(&sd_bus_close_unref)> bus(raw, &sd_bus_close_unref);
    const char* name = nullptr;
    Check("sd_bus_set_address", sd_bus_set_address(raw, address.c_str()));
    Check("sd_bus_set_bus_client", sd_bus_set_bus_client(raw, true));
    Check("sd_bus_start", sd_bus_start(raw));
    Check("sd_bus_get_unique_name", sd_bus_get_unique_name(raw, &name));
}

/** Reads up to the end of the line or of the stream. */
std::string ReadLine(int fd) {
    std::string line;
    char character = 0;
    while (read(fd, &character, 1) == 1 && character != '\n') {
        line.push_back(character);
    }
    return line;
}

} // namespace

PrivateBus::PrivateBus() {
    const std::string config = Folder() + "/config";
    const std::string log = Folder() + "/log";
    WriteConfig(config, Folder());
    try {
        Start(config, log);
    } catch (...) {
        Stop();
        throw;
    }
    // The daemon has both open or read; so a killed test leaves less behind.
    std::filesystem::remove(config);
    std::filesystem::remove(log);
    setenv(addressVariable, address.c_str(), 1);
}

PrivateBus::~PrivateBus() {
    unsetenv(addressVariable);
    Stop();
}

void PrivateBus::Start(const std::string& config, const std::string& log) {
    std::string program = "dbus-daemon";
    std::string option = "--config-file=" + config;
    std::string nofork = "--nofork";
    std::string printAddress = "--print-address=1";
    const std::array<char*, 5> arguments{program.data(), nofork.data(), printAddress.data(),
                                         option.data(), nullptr};
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        ThrowErrno("pipe2");
    }
    const pid_t parent = getpid();
    process = fork();
    if (process == 0) {
        BecomeDaemon(arguments.data(), ends[1], log.c_str(), parent);
    }
    close(ends[1]);
    address = ReadLine(ends[0]);
    close(ends[0]);
    if (address.empty()) {
        throw std::runtime_error("dbus-daemon didn't start: " + ReadFile(log));
    }
    AwaitAnswer(address);
}

void PrivateBus::Stop() {
    if (process > 0) {
        kill(process, SIGTERM);
        while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
        }
        process = -1;
    }
}

} // namespace vantric::test
