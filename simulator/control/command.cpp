// SPDX-License-Identifier: Apache-2.0
#include "control/command.hpp"

#include "connection.hpp"
#include "number_text.hpp"
#include "payload.hpp"

#include <chrono>
#include <string_view>

namespace simulator {

namespace {

std::chrono::milliseconds LimitOf(std::span<const std::string> words) {
    constexpr std::chrono::seconds usualWait{60};
    if (words.front() != "wait-requests") {
        return simulator_link::answerTimeout;
    }
    const auto seconds = words.size() > 3 ? ParseInteger(words[3]) : std::nullopt;
    return std::chrono::seconds(seconds.value_or(usualWait.count()));
}

simulator_link::Frame FrameOf(std::span<const std::string> words) {
    simulator_link::PayloadWriter writer;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) {
            writer.Write(std::uint8_t{0});
        }
        writer.Write(std::string_view(words[i]));
    }
    return {simulator_link::FrameKind::Control, 1, writer.Finish()};
}

} // namespace

Outcome Command(std::span<const std::string> words) {
    auto connection = simulator_link::Connection::Open(simulator_link::SocketPath());
    if (!connection || !connection->Send(FrameOf(words))) {
        return {false, "no simulator listens at \"" + simulator_link::SocketPath() +
                           "\"; start one, or set SIMULATOR_SOCKET to the socket of one that runs"};
    }
    const auto reply = connection->Receive(LimitOf(words));
    if (!reply) {
        return {false, "the simulator gave no answer in time"};
    }
    simulator_link::PayloadReader reader(reply->payload);
    const bool good = reader.Read<std::uint8_t>() == 0;
    return {good, reader.RestAsText()};
}

} // namespace simulator
