/** Plays a platform with cards for the daemon. */

#include "bus/platform_services.hpp"
#include "scenario/scenario.hpp"
#include "server/server.hpp"

#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>
#include <vector>

namespace {

/** tracePath: where the trace goes; null for none. */
int Play(const char* path, const char* tracePath) {
    const auto scenario = simulator::ReadScenario(path);
    simulator::Machine machine(scenario);
    simulator::EventLoop loop;
    std::optional<simulator::PlatformServices> services;
    if (scenario.platformServices) {
        services.emplace(loop, machine);
    }
    simulator::Server server(loop, machine, simulator_link::SocketPath());
    simulator::Control control(machine, server, services ? &*services : nullptr);
    server.SetControl(control);
    std::optional<simulator::Trace> trace;
    if (tracePath != nullptr) {
        server.SetTrace(trace.emplace(tracePath));
    }
    // Whoever started the simulator waits for this line.
    std::printf("simulator: %zu cards, listening at %s\n", machine.Cards().size(),
                simulator_link::SocketPath().c_str());
    std::fflush(stdout);
    loop.Run();
    return 0;
}

constexpr const char* usage =
    "usage: simulator [--trace FILE] SCENARIO.yaml\n"
    "Plays the platform and the cards of the scenario until it is stopped.\n"
    "  --trace FILE  writes each request and each response to FILE\n"
    "  --version     prints the version\n"
    "SIMULATOR_SOCKET names the socket to listen at.\n";

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    const bool traced = words.size() == 3 && words[0] == "--trace";
    if (words.size() == 1 && (words[0] == "--help" || words[0] == "-h")) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (words.size() == 1 && words[0] == "--version") {
        std::puts("simulator " VANTRIC_VERSION);
        return 0;
    }
    if (!traced && (words.size() != 1 || words[0].starts_with("-"))) {
        std::fputs("simulator: give one scenario; simulator --help tells the options\n", stderr);
        return 2;
    }
    try {
        return Play(argv[argc - 1], traced ? argv[2] : nullptr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simulator: %s\n", error.what());
        return 1;
    }
}
