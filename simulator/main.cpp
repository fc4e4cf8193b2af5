// SPDX-License-Identifier: Apache-2.0
/** Plays a platform with cards for the daemon. */

#include "bus/platform_services.hpp"
#include "scenario/scenario.hpp"
#include "serial/front.hpp"
#include "server/server.hpp"

#include <cstdio>
#include <exception>
#include <optional>
#include <span>
#include <string_view>

namespace {

/** What the command line asks for. */
struct Options {
    const char* scenario = nullptr;
    const char* trace = nullptr;  ///< file; null for none
    const char* serial = nullptr; ///< folder; null for no lines
};

/** Returns what the words say; nothing where they say something else. */
std::optional<Options> Parse(std::span<char* const> words) {
    Options options;
    for (; words.size() > 1; words = words.subspan(2)) {
        const std::string_view word = words[0];
        if (word == "--trace") {
            options.trace = words[1];
        } else if (word == "--serial") {
            options.serial = words[1];
        } else {
            return std::nullopt;
        }
    }
    if (words.empty() || words[0][0] == '-') {
        return std::nullopt;
    }
    options.scenario = words[0];
    return options;
}

int Play(const Options& options) {
    const auto scenario = simulator::ReadScenario(options.scenario);
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
    if (options.trace != nullptr) {
        server.SetTrace(trace.emplace(options.trace));
    }
    std::optional<simulator::SerialFront> lines;
    if (options.serial != nullptr) {
        lines.emplace(loop, machine, options.serial, [&server](auto& endPoint, auto request) {
            return server.Ask(endPoint, request);
        });
        control.afterCommand = [&lines] { lines->Follow(); };
    }
    // Whoever started the simulator waits for this line.
    std::printf("simulator: %zu cards, listening at %s\n", machine.Cards().size(),
                simulator_link::SocketPath().c_str());
    std::fflush(stdout);
    loop.Run();
    return 0;
}

constexpr const char* usage =
    "usage: simulator [--trace FILE] [--serial FOLDER] SCENARIO.yaml\n"
    "Plays the platform and the cards of the scenario until it is stopped.\n"
    "  --trace FILE     writes each request and each response to FILE\n"
    "  --serial FOLDER  puts each endpoint on a serial line too: FOLDER/EID leads to it\n"
    "  --version        prints the version\n"
    "SIMULATOR_SOCKET names the socket to listen at.\n";

} // namespace

int main(int argc, char** argv) {
    const std::span<char* const> words(argv + 1, static_cast<std::size_t>(argc - 1));
    const std::string_view only = words.size() == 1 ? words[0] : "";
    if (only == "--help" || only == "-h") {
        std::fputs(usage, stdout);
        return 0;
    }
    if (only == "--version") {
        std::puts("simulator " VANTRIC_VERSION);
        return 0;
    }
    const auto options = Parse(words);
    if (!options) {
        std::fputs("simulator: give one scenario; simulator --help tells the options\n", stderr);
        return 2;
    }
    try {
        return Play(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simulator: %s\n", error.what());
        return 1;
    }
}
