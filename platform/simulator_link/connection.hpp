// SPDX-License-Identifier: Apache-2.0
/** One connection to the simulator. */
#pragma once

#include "file_descriptor.hpp"
#include "frame.hpp"

#include <chrono>
#include <optional>
#include <string>

namespace simulator_link {

/** How long a caller waits for an answer of the simulator, which gives its answers at once. */
constexpr std::chrono::seconds answerTimeout{5};

using platform_support::FileDescriptor;

/** The socket's path from SIMULATOR_SOCKET, empty if it isn't set. */
std::string SocketPath();

/** A connected stream to the simulator. One thread may receive while others send one at a time. */
class Connection {
public:
    /** Connects to the simulator at a path. Empty if there is no listener. */
    static std::optional<Connection> Open(const std::string& path);

    /** Sends a frame; false if the connection is gone. */
    bool Send(const Frame& frame) const;

    /** Waits for the next frame. Empty if the connection is gone, or if limit is given and has
     *  passed. */
    std::optional<Frame> Receive(std::optional<std::chrono::milliseconds> limit = std::nullopt);

    /** Ends the connection: a waiting Receive returns. May be called from any thread. */
    void Shutdown() const;

private:
    explicit Connection(FileDescriptor socket) : socket(std::move(socket)) {}

    FileDescriptor socket;
    FrameAssembler assembler;
};

/** Opens a connection, sends one frame and returns the payload of its reply after the result.
 *  Empty if there is no simulator, or if the result isn't 0. */
std::optional<std::vector<std::uint8_t>> AskOnce(const Frame& question);

} // namespace simulator_link
