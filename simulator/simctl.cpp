// SPDX-License-Identifier: Apache-2.0
/** Changes a running simulator. */

#include "connection.hpp"
#include "control/control.hpp"
#include "number_text.hpp"
#include "payload.hpp"

#include <cstdio>
#include <string>
#include <string_view>

namespace {

/** How long the simulator may take: a command that waits says so in its last word. */
std::chrono::milliseconds LimitOf(int argc, char** argv) {
    constexpr std::chrono::seconds usualWait{60};
    if (std::string_view(argv[1]) != "wait-requests") {
        return simulator_link::answerTimeout;
    }
    const auto seconds = argc > 4 ? simulator::ParseInteger(argv[4]) : std::nullopt;
    return std::chrono::seconds(seconds.value_or(usualWait.count()));
}

simulator_link::Frame FrameOf(int argc, char** argv) {
    simulator_link::PayloadWriter writer;
    for (int i = 1; i < argc; ++i) {
        if (i > 1) {
            writer.Write(std::uint8_t{0});
        }
        writer.Write(std::string_view(argv[i]));
    }
    return {simulator_link::FrameKind::Control, 1, writer.Finish()};
}

int Complain(const std::string& text) {
    std::fprintf(stderr, "simctl: %s\n", text.c_str());
    return 1;
}

bool WantsHelp(int argc, char** argv) {
    const std::string_view word = argc < 2 ? "--help" : argv[1];
    return word == "--help" || word == "-h" || word == "help";
}

void PrintHelp() {
    std::printf("usage: simctl COMMAND [WORD...]\n"
                "Changes the simulator that listens at SIMULATOR_SOCKET, and says what it did.\n"
                "%s\n",
                simulator::ListOfCommands().c_str());
}

} // namespace

int main(int argc, char** argv) {
    if (WantsHelp(argc, argv)) {
        PrintHelp();
        return 0;
    }
    if (std::string_view(argv[1]) == "--version") {
        std::puts("simctl " VANTRIC_VERSION);
        return 0;
    }
    auto connection = simulator_link::Connection::Open(simulator_link::SocketPath());
    if (!connection || !connection->Send(FrameOf(argc, argv))) {
        return Complain("no simulator listens at \"" + simulator_link::SocketPath() +
                        "\"; start one, or set SIMULATOR_SOCKET to the socket of one that runs");
    }
    const auto reply = connection->Receive(LimitOf(argc, argv));
    if (!reply) {
        return Complain("the simulator gave no answer in time");
    }
    simulator_link::PayloadReader reader(reply->payload);
    const auto result = reader.Read<std::uint8_t>();
    const auto text = reader.RestAsText();
    if (result != 0) {
        return Complain(text);
    }
    std::printf("%s\n", text.c_str());
    return 0;
}
