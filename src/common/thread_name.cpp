// SPDX-License-Identifier: Apache-2.0
#include "common/thread_name.hpp"

#include <pthread.h>

#include <array>
#include <cstring>

namespace vantric {

namespace {

/** The size that the system reserves for a thread's name, terminator included. */
constexpr std::size_t threadNameSize = 16;

/** Empty until the thread's name has been asked for. The log wants it in every line, and the way to
 *  the kernel is as long as the rest of the line takes. */
thread_local std::array<char, threadNameSize> threadName{};

} // namespace

const char* get_thread_name() {
    if (threadName.front() == '\0' &&
        pthread_getname_np(pthread_self(), threadName.data(), threadName.size()) != 0) {
        std::strncpy(threadName.data(), "vantricd", threadName.size() - 1);
    }
    return threadName.data();
}

void NameThisThread(const std::string& name) {
    pthread_setname_np(pthread_self(), name.substr(0, threadNameSize - 1).c_str());
    threadName = {};
}

} // namespace vantric
