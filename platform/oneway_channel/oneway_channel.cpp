// SPDX-License-Identifier: Apache-2.0
#include "oneway_channel.hpp"

#include <fcntl.h>
#include <pthread.h>
#include <sys/epoll.h>
#include <systemd/sd-event.h>
#include <tracelog.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

constexpr int channelModule = 300;
constexpr const char* channelFile = "oneway_channel";

/** How long requests run before the loop's other sources have their turn. */
constexpr std::chrono::milliseconds longestTurn{10};

/** Requests that are kept while no loop is registered. */
constexpr std::size_t mostWithoutLoop = 10000;

/** Guards what the channel holds. It is taken over a fork, so handlers run without it. */
std::mutex oneWayChannelOperationMutex;

struct Request {
    OneWayChannel::Handler handler;
    void* data;
    unsigned long size;
};

/** Runs what came from outside the channel; its exceptions must not reach the event loop. */
template <typename Call>
void RunGuarded(const Call& call) {
    try {
        call();
    } catch (const std::exception& error) {
        tracelog_printf(1, channelModule, "%s.%d.%s: Handler failed : %s", channelFile, __LINE__,
                        __func__, error.what());
    } catch (...) {
        tracelog_printf(1, channelModule, "%s.%d.%s: Handler failed", channelFile, __LINE__,
                        __func__);
    }
}

} // namespace

/** The inside of the channel. A byte stands in the pipe from the first request of a burst until the
 *  loop has found nothing left, so the pipe can't fill up and a burst costs one wake-up. */
struct OneWayChannel::Impl : std::enable_shared_from_this<OneWayChannel::Impl> {
    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    ~Impl() {
        for (const int end : pipeEnds) {
            if (end >= 0) {
                close(end);
            }
        }
    }

    static int Wake(sd_event_source* /*source*/, int /*fd*/, uint32_t /*events*/, void* channel) {
        // A handler that forks ends the channel in the child; this keeps it until the return.
        const std::shared_ptr<Impl> self = static_cast<Impl*>(channel)->shared_from_this();
        self->RunPending();
        return 0;
    }

    /** Runs requests until none is left or the turn is over. Then the loop's other sources have
     *  theirs: a slow request holds up the bus for its own length, and not for that of the queue.
     */
    void RunPending() {
        const auto endOfTurn = std::chrono::steady_clock::now() + longestTurn;
        do {
            if (next == running.size() && !TakePending()) {
                break;
            }
            const Request request = std::move(running[next++]);
            RunGuarded([&] { request.handler(context, request.data, request.size); });
            if (source == nullptr) {
                return; // a child now: the queue and the pipe are the parent's
            }
        } while (std::chrono::steady_clock::now() < endOfTurn);
        if (function) {
            RunGuarded([&] { function(context); });
        }
    }

    /** Moves what is pending to the loop's side. Returns false if there is nothing, and then the
     *  loop sleeps until there is. */
    bool TakePending() {
        running.clear();
        next = 0;
        const std::lock_guard lock(oneWayChannelOperationMutex);
        running.swap(pending);
        if (!running.empty()) {
            return true;
        }
        std::array<char, 1> token{};
        static_cast<void>(read(pipeEnds[0], token.data(), token.size())); // empty is as good
        awake = false;
        return false;
    }

    /** Lets go of the loop and of all requests. */
    void Drop() {
        source = sd_event_source_unref(source);
        function = nullptr;
        pending.clear();
        running.clear();
        next = 0;
    }

    std::array<int, 2> pipeEnds{-1, -1};
    std::vector<Request> pending; ///< written by every thread, under the mutex
    bool awake = false;           ///< the byte stands in the pipe; under the mutex
    std::vector<Request> running; ///< the loop thread's own, as is next
    std::size_t next = 0;
    sd_event_source* source = nullptr;
    void* context = nullptr;
    std::function<void(void*)> function;
};

std::atomic<OneWayChannel*> OneWayChannel::instance{nullptr};
std::mutex OneWayChannel::initCriticalSection;

OneWayChannel& OneWayChannel::GetInstance() {
    OneWayChannel* channel = instance.load(std::memory_order_acquire);
    if (channel == nullptr) {
        const std::lock_guard lock(initCriticalSection);
        channel = instance.load(std::memory_order_relaxed);
        if (channel == nullptr) {
            channel = new OneWayChannel;
            RegisterForkHandlers();
            instance.store(channel, std::memory_order_release);
        }
    }
    return *channel;
}

OneWayChannel::OneWayChannel() : impl(std::make_shared<Impl>()) {
    if (pipe2(impl->pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        tracelog_printf(1, channelModule, "%s.%d.%s: Pipe creation failed : %d", channelFile,
                        __LINE__, __func__, errno);
        throw std::runtime_error("Error in pipe creation OneWayChannel");
    }
}

OneWayChannel::~OneWayChannel() {
    tracelog_printf(4, channelModule,
                    "%s.%d.%s: Destructor. fork happened? (NOT Recommended to fork with multiple "
                    "threads)",
                    channelFile, __LINE__, __func__);
    impl->Drop();
}

void OneWayChannel::RegisterForkHandlers() {
    // A child inherits the handlers, so a channel made there must not add them again.
    static bool registered = false;
    if (registered) {
        return;
    }
    const int result = pthread_atfork([] { oneWayChannelOperationMutex.lock(); },
                                      [] { oneWayChannelOperationMutex.unlock(); },
                                      [] {
                                          oneWayChannelOperationMutex.unlock();
                                          LeaveToParent();
                                      });
    if (result != 0) {
        tracelog_printf(1, channelModule, "%s.%d.%s: Fork handlers not registered : %d",
                        channelFile, __LINE__, __func__, result);
        return;
    }
    registered = true;
}

void OneWayChannel::LeaveToParent() {
    delete instance.load();
    instance.store(nullptr);
}

int OneWayChannel::RegisterEventLoop(const sdeventplus::Event& event, void* context,
                                     std::function<void(void*)> function) {
    const std::lock_guard lock(oneWayChannelOperationMutex);
    if (impl->source != nullptr) {
        return -EBUSY;
    }
    const int result = sd_event_add_io(event.get(), &impl->source, impl->pipeEnds[0], EPOLLIN,
                                       Impl::Wake, impl.get());
    if (result < 0) {
        return result;
    }
    impl->context = context;
    impl->function = std::move(function);
    return 0;
}

int OneWayChannel::Execute(Handler handler, void* requestData, unsigned long requestSize,
                           bool wait) {
    if (!handler || wait) {
        return -EINVAL;
    }
    const std::lock_guard lock(oneWayChannelOperationMutex);
    if (impl->source == nullptr && impl->pending.size() >= mostWithoutLoop) {
        return -ENOBUFS; // no loop runs them, and perhaps none ever will
    }
    try {
        impl->pending.push_back({std::move(handler), requestData, requestSize});
    } catch (const std::bad_alloc&) {
        return -ENOMEM;
    }
    if (impl->awake) {
        return 0; // the loop has been called already
    }
    constexpr char token = 0;
    if (write(impl->pipeEnds[1], &token, sizeof(token)) != sizeof(token)) {
        const int error = errno;
        impl->pending.pop_back();
        tracelog_printf(1, channelModule, "%s.%d.%s: Request not taken : %d", channelFile, __LINE__,
                        __func__, error);
        return -error;
    }
    impl->awake = true;
    return 0;
}
