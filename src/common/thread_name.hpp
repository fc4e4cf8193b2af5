// SPDX-License-Identifier: Apache-2.0
/** Names of threads, for the log. */
#pragma once

#include <string>
#include <thread>
#include <utility>

namespace vantric {

/** Returns the calling thread's name in a thread-local buffer of 16 bytes, or "vantricd" if the
 *  system doesn't tell it. The system is asked once for each thread. The pointer stays valid as
 *  long as the thread lives. */
const char* get_thread_name();

/** Names the calling thread. The system keeps at most 15 characters; a longer name is cut to
 *  them. */
void NameThisThread(const std::string& name);

/** Starts a thread that has its name before the first line of body runs. */
template <typename Body>
std::thread StartThread(std::string name, Body body) {
    return std::thread([name = std::move(name), body = std::move(body)]() mutable {
        NameThisThread(name);
        body();
    });
}

} // namespace vantric
