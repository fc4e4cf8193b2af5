// SPDX-License-Identifier: Apache-2.0
/** A lasting link to the simulator. */
#pragma once

#include "connection.hpp"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace simulator_link {

/** Keeps a connection to the simulator, and comes back when the simulator was away.
 *
 * A thread of the link receives. The calls may be made from any thread but that one. */
class Link {
public:
    /** Called on the link's thread with each frame that is no reply; must return soon. */
    using Receiver = std::function<void(const Frame& frame)>;
    /** What to send first on every connection but the first. */
    using Greeting = std::function<std::vector<Frame>()>;

    /** name is the thread's, at most 15 characters. */
    Link(const char* name, Receiver receiver, Greeting greeting);
    ~Link();

    /** Connects for the first time and starts the thread; false if there is no simulator. */
    bool Start();

    /** Sends a question with a tag of its own and waits for its reply. Returns the payload after
     *  the result; empty if the result isn't 0, or if there is no simulator or no answer. */
    std::optional<std::vector<std::uint8_t>> Ask(Frame question);

    /** A tag that no other question of this link has. */
    std::uint32_t NewTag() { return nextTag.fetch_add(1, std::memory_order_relaxed); }

    /** Ends the connection for good. No frame is received afterwards. */
    void Stop();

private:
    void Run();
    void ReceiveAll(Connection& connection);
    void TakeReply(Frame frame);
    std::shared_ptr<Connection> Reconnect();

    const char* name;
    Receiver receiver;
    Greeting greeting;
    std::atomic<std::uint32_t> nextTag{1};

    std::mutex sendMutex; // one frame at a time on the socket

    std::mutex mutex; // guards all that follows but the thread
    std::condition_variable changed;
    std::shared_ptr<Connection> connection; // empty while the simulator is away
    std::map<std::uint32_t, std::optional<std::vector<std::uint8_t>>> replies; // by open question
    std::uint64_t losses = 0; // connections lost so far: an older question has no answer
    bool stopped = false;

    std::thread thread;
};

} // namespace simulator_link
