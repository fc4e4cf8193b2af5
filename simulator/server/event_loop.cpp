// SPDX-License-Identifier: Apache-2.0
#include "server/event_loop.hpp"

#include <csignal>
#include <system_error>
#include <time.h>
#include <utility>

namespace simulator {

namespace {

int Dispatch(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t events, void* context) {
    (*static_cast<Watch::Handler*>(context))(events);
    return 0;
}

} // namespace

int Checked(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), what);
    }
    return result;
}

Watch::Watch(sd_event* event, int descriptor, std::uint32_t events, Handler handler)
    : handler(std::make_unique<Handler>(std::move(handler))) {
    sd_event_source* added = nullptr;
    Checked(sd_event_add_io(event, &added, descriptor, events, Dispatch, this->handler.get()),
            "sd_event_add_io");
    source.reset(added);
}

void Watch::SetEvents(std::uint32_t events) {
    sd_event_source_set_io_events(source.get(), events);
}

EventLoop::EventLoop() {
    sd_event* made = nullptr;
    Checked(sd_event_new(&made), "sd_event_new");
    event.reset(made);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    for (const int signal : {SIGTERM, SIGINT}) {
        // Without a handler the signal ends the loop.
        Checked(sd_event_add_signal(made, nullptr, signal, nullptr, nullptr),
                "sd_event_add_signal");
    }
}

Watch EventLoop::OnDescriptor(int descriptor, std::uint32_t events, Watch::Handler handler) {
    return {event.get(), descriptor, events, std::move(handler)};
}

void EventLoop::After(std::chrono::milliseconds delay, std::function<void()> function) {
    const auto id = nextTimer++;
    auto timer = std::make_unique<Timer>(Timer{this, id, std::move(function)});
    const auto microseconds = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(delay).count());
    constexpr std::uint64_t accuracy = 1000;
    Checked(sd_event_add_time_relative(event.get(), &timer->source, CLOCK_MONOTONIC, microseconds,
                                       accuracy, Expire, timer.get()),
            "sd_event_add_time_relative");
    timers.emplace(id, std::move(timer));
}

int EventLoop::Expire(sd_event_source* /*source*/, std::uint64_t /*time*/, void* context) {
    auto* const timer = static_cast<Timer*>(context);
    const auto function = std::move(timer->function);
    timer->loop->timers.erase(timer->id);
    function();
    return 0;
}

void EventLoop::Run() {
    Checked(sd_event_loop(event.get()), "sd_event_loop");
}

} // namespace simulator
