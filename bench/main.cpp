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
    std::optional<bench::Trace> trace;
    if (tracePath != nullptr) {
        server.SetTrace(trace.emplace(tracePath));
    }
    // Whoever started the bench waits for this line.
    std::printf("bench: %zu cards, listening at %s\n", machine.Cards().size(),
                benchlink::SocketPath().c_str());
    std::fflush(stdout);
    loop.Run();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<const char*> words(argv + 1, argv + argc);
    const bool traced = words.size() == 3 && std::string_view(words[0]) == "--trace";
    if (words.size() != 1 && !traced) {
        std::fprintf(stderr, "usage: bench [--trace FILE] SCENARIO.yaml\n"
                             "BENCH_SOCKET names the socket to listen at\n");
        return 1;
    }
    try {
        return Play(words.back(), traced ? words[1] : nullptr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench: %s\n", error.what());
        return 1;
    }
}
