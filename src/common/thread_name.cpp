#include "common/thread_name.hpp"

#include <pthread.h>

#include <array>
#include <cstring>

namespace vantric {

namespace {
/// The size that the system reserves for a thread's name, terminator included.
constexpr std::size_t threadNameSize = 16;
} // namespace

const char* get_thread_name() {
    thread_local std::array<char, threadNameSize> name{};
    if (pthread_getname_np(pthread_self(), name.data(), name.size()) != 0) {
        std::strncpy(name.data(), "vantricd", name.size() - 1);
    }
    return name.data();
}

void NameThread(std::thread& thread, const std::string& name) {
    pthread_setname_np(thread.native_handle(), name.substr(0, threadNameSize - 1).c_str());
}

} // namespace vantric
