/** Plays a platform with cards for the daemon. */

#include "bus/platform_services.hpp"
#include "scenario/scenario.hpp"
#include "server/server.hpp"

#include <cstdio>
#include <exception>

namespace {

int Play(const std::string& path) {
    const auto scenario = bench::ReadScenario(path);
    bench::Machine machine(scenario);
    bench::EventLoop loop;
    std::optional<bench::PlatformServices> services;
    if (scenario.platformServices) {
        services.emplace(loop, machine);
    }
    bench::Server server(loop, machine, benchlink::SocketPath());
    bench::Control control(machine, server, services ? &*services : nullptr);
    server.SetControl(control);
    // Whoever started the bench waits for this line.
    std::printf("bench: %zu cards, listening at %s\n", machine.Cards().size(),
                benchlink::SocketPath().c_str());
    std::fflush(stdout);
    loop.Run();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench SCENARIO.yaml\n"
                             "BENCH_SOCKET names the socket to listen at\n");
        return 1;
    }
    try {
        return Play(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
}
