// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/loop_exit.hpp"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace vantric {

void LoopExit::SourceRelease::operator()(sd_event_source* source) const noexcept {
    sd_event_source_unref(source);
}

LoopExit::LoopExit(sd_event* loop) : demand(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (demand < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    sd_event_source* added = nullptr;
    const int result = sd_event_add_io(loop, &added, demand, EPOLLIN, OnDemand, loop);
    if (result < 0) {
        close(demand);
        throw std::system_error(-result, std::generic_category(), "sd_event_add_io");
    }
    source.reset(added);
}

LoopExit::~LoopExit() {
    source.reset();
    close(demand);
}

void LoopExit::Demand() noexcept {
    // Fails only when the counter is full, and then the loop has been told often enough.
    static_cast<void>(eventfd_write(demand, 1));
}

int LoopExit::OnDemand(sd_event_source* /*source*/, int /*fd*/, uint32_t /*events*/, void* loop) {
    return sd_event_exit(static_cast<sd_event*>(loop), EXIT_FAILURE);
}

} // namespace vantric
