// SPDX-License-Identifier: Apache-2.0
#include "sdeventplus/event.hpp"

#include <system_error>

namespace sdeventplus {

namespace {

/** Turns the negative result of a call into an exception and hands any other result on. */
int Check(const char* function, int result) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), function);
    }
    return result;
}

} // namespace

Event::Event(sd_event* event) : Event(sd_event_ref(event), std::false_type()) {}

Event::Event(sd_event* event, std::false_type) : handle(event, &sd_event_unref) {}

Event Event::get_default() {
    sd_event* event = nullptr;
    Check("sd_event_default", sd_event_default(&event));
    return Event(event, std::false_type());
}

Event Event::get_new() {
    sd_event* event = nullptr;
    Check("sd_event_new", sd_event_new(&event));
    return Event(event, std::false_type());
}

int Event::run(MaybeTimeout timeout) const {
    const std::uint64_t microseconds = timeout ? timeout->count() : UINT64_MAX;
    return Check("sd_event_run", sd_event_run(get(), microseconds));
}

int Event::loop() const {
    return Check("sd_event_loop", sd_event_loop(get()));
}

int Event::exit(int code) const {
    return Check("sd_event_exit", sd_event_exit(get(), code));
}

} // namespace sdeventplus
