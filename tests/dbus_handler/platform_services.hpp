// SPDX-License-Identifier: Apache-2.0
/** The services of the platform that the bus side asks, on a thread of their own. */
#pragma once

#include <systemd/sd-bus.h>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <tuple>
#include <variant>
#include <vector>

namespace vantric::test {

/** Answers property reads at the names of the entity manager and of the address service. */
class PlatformServices {
public:
    using Pairs = std::vector<std::tuple<std::string, std::string>>;
    using Answer = std::variant<std::string, Pairs, std::uint32_t>;

    PlatformServices();
    ~PlatformServices();
    PlatformServices(const PlatformServices&) = delete;
    PlatformServices& operator=(const PlatformServices&) = delete;

    /** Makes the object at path answer every read; any thread. */
    void Set(const std::string& path, Answer answer);

    /** Does this once, in the next read: when the answer is decided and not yet sent. Any thread.
     */
    void InNextRead(std::function<void()> happens);

    /** Returns the reads since the last call, each as "service path interface property". */
    std::vector<std::string> TakeReads();

private:
    static int OnMessage(sd_bus_message* message, void* self, sd_bus_error* error);

    std::mutex mutex;
    std::map<std::string, Answer> answers;
    std::vector<std::string> reads;
    std::function<void()> inNextRead;
    std::atomic<bool> stopped = false;
    std::thread thread;
};

} // namespace vantric::test
