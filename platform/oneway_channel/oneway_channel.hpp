// SPDX-License-Identifier: Apache-2.0
/** Carries requests from any thread to the thread of one event loop. */
#pragma once

#include <sdeventplus/event.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

/** The process's one channel. A request that was taken is never dropped while the loop lives; a
 *  burst of requests wakes the loop once; a handler that throws costs its own request only.
 *
 *  The channel lives until the process ends. A fork destroys it in the child, together with the
 *  requests that wait in it: they are the parent's. */
class OneWayChannel {
public:
    /** Runs on the thread of the event loop with the request's data and size. context is the one
     *  given to RegisterEventLoop; the result is dropped. */
    using Handler = std::function<int(void* context, void* requestData, unsigned long requestSize)>;

    /** Returns the channel, made on the first call. Any thread.
     *  @throws std::runtime_error if its pipe can't be made. */
    static OneWayChannel& GetInstance();

    /** Makes requests run on the loop of the event, one at a time, in the order of Execute; those
     *  that came before run first. function, where it isn't empty, runs on the loop's thread after
     *  the requests of each wake-up. Called once, on the loop's thread and before it runs.
     *  Returns 0 when registered, otherwise a negative errno. */
    int RegisterEventLoop(const sdeventplus::Event& event, void* context,
                          std::function<void(void*)> function);

    /** Hands a request over and returns without waiting for it; any thread. requestData belongs to
     *  the handler when the result is 0. On any other result, a negative errno, the request wasn't
     *  taken and requestData stays with the caller. wait must be false: the channel has one way. */
    int Execute(Handler handler, void* requestData, unsigned long requestSize, bool wait);

    OneWayChannel(const OneWayChannel&) = delete;
    OneWayChannel& operator=(const OneWayChannel&) = delete;

private:
    OneWayChannel();
    ~OneWayChannel();
    struct Impl;

    static void RegisterForkHandlers();
    static void LeaveToParent();

    static std::atomic<OneWayChannel*> instance;
    static std::mutex initCriticalSection;
    std::shared_ptr<Impl> impl;
};
