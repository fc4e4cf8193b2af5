// SPDX-License-Identifier: Apache-2.0
/** The platform's notifications of a firmware update, as events. */
#include "event_handler/event_handler.hpp"

#include <hubcast.h>

#include <array>
#include <map>
#include <string>
#include <string_view>

namespace vantric {

namespace {

constexpr auto fwUpdateStart = "PLDMFWUpdateStart$1$FWUpdateStart$";
constexpr auto fwUpdateStop = "PLDMFWUpdateStop$1$FWUpdateStop$";

/** One word of the library for both subscriptions; the second overwrites the first. */
void* hubcastContext = nullptr;

const std::map<std::string_view, EventKind>& NotificationEvents() {
    static const std::map<std::string_view, EventKind> notificationEvents{
        {fwUpdateStart, FW_UPDATE_START},
        {fwUpdateStop, FW_UPDATE_END},
    };
    return notificationEvents;
}

/** Called by the notification library, on a thread of its own. */
void OnNotification(void* /*context*/, const char* name, std::uintptr_t length) {
    if (name == nullptr || length == 0) {
        return;
    }
    const auto event = NotificationEvents().find(name);
    if (event == NotificationEvents().end()) {
        return;
    }
    NotifyObservers(event->second, std::string("Event"));
}

} // namespace

void SubscribeToEvents() {
    for (const char* name : std::array{fwUpdateStart, fwUpdateStop}) {
        if (hubcast_subscriber_usrctx_init(&hubcastContext, "vantric", OnNotification, nullptr) ==
            0) {
            hubcast_subscribe_notification(hubcastContext, name);
        }
    }
}

} // namespace vantric
