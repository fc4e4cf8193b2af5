// SPDX-License-Identifier: Apache-2.0
/** The loop on which all of the simulator runs. */
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <systemd/sd-event.h>

namespace simulator {

/** A watch on a descriptor; it ends with the object. */
class Watch {
public:
    using Handler = std::function<void(std::uint32_t events)>;

    Watch(sd_event* event, int descriptor, std::uint32_t events, Handler handler);

    /** Changes what is waited for, as epoll's bits. */
    void SetEvents(std::uint32_t events);

private:
    struct Unref {
        void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
    };

    // The handler stays where it is when the watch moves: the source points to it.
    std::unique_ptr<Handler> handler;
    std::unique_ptr<sd_event_source, Unref> source;
};

/** One loop, on the thread that runs it. */
class EventLoop {
public:
    /** From here on SIGTERM and SIGINT end Run, and nothing else. */
    EventLoop();

    Watch OnDescriptor(int descriptor, std::uint32_t events, Watch::Handler handler);

    /** Calls a function once after a time, 0 for as soon as the loop comes round. */
    void After(std::chrono::milliseconds delay, std::function<void()> function);

    /** Runs until SIGTERM or SIGINT. */
    void Run();

    sd_event* Get() const { return event.get(); }

private:
    struct Timer {
        EventLoop* loop;
        std::uint64_t id;
        std::function<void()> function;
        sd_event_source* source = nullptr;
        ~Timer() { sd_event_source_disable_unref(source); }
    };
    struct Unref {
        void operator()(sd_event* event) const { sd_event_unref(event); }
    };

    static int Expire(sd_event_source* source, std::uint64_t time, void* context);

    std::unique_ptr<sd_event, Unref> event;
    std::map<std::uint64_t, std::unique_ptr<Timer>> timers;
    std::uint64_t nextTimer = 0;
};

/** Throws std::system_error for a negative result of libsystemd, which is an errno. */
int Checked(int result, const char* what);

} // namespace simulator
