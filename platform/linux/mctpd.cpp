// SPDX-License-Identifier: Apache-2.0
#include "mctpd.hpp"

#include "log.hpp"
#include "mctpd_objects.hpp"

#include <cstring>

namespace mctplink {

namespace {

constexpr const char* service = "au.com.codeconstruct.MCTP1";
constexpr const char* root = "/au/com/codeconstruct/mctp1";
constexpr const char* objectManager = "org.freedesktop.DBus.ObjectManager";

constexpr std::uint64_t quiet = 500'000;       // microseconds
constexpr std::uint64_t retryPause = 2000'000; // microseconds

/** Whether a call failed because the service isn't there. */
bool IsAway(sd_bus_message* reply) {
    return sd_bus_message_is_method_error(reply, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0 ||
           sd_bus_message_is_method_error(reply, SD_BUS_ERROR_NAME_HAS_NO_OWNER) > 0;
}

} // namespace

bool Mctpd::Match(const std::string& rule, sd_bus_message_handler_t handler, SlotHandle& slot) {
    sd_bus_slot* made = nullptr;
    if (sd_bus_add_match_async(bus.get(), &made, rule.c_str(), handler, OnMatch, this) < 0) {
        return false;
    }
    slot.reset(made);
    return true;
}

bool Mctpd::Start(sd_event* event) {
    sd_bus* opened = nullptr;
    if (sd_bus_open_system_with_description(&opened, "mctplink") < 0) {
        return false;
    }
    bus.reset(opened);
    sd_event_source* made = nullptr;
    const bool ready =
        sd_event_add_time_relative(event, &made, CLOCK_MONOTONIC, 0, 0, OnQuiet, this) >= 0;
    timer.reset(made);
    const std::string signal = "type='signal',sender='" + std::string(service) + "',path='" + root +
                               "',interface='" + objectManager + "'";
    const std::string owner = "type='signal',sender='org.freedesktop.DBus',"
                              "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
                              std::string(service) + "'";
    // The objects are asked for after the matches, so that no change is lost between the two.
    return ready && Match(owner, OnOwner, ownerMatch) &&
           Match(signal, OnInterfaces, interfacesMatch) &&
           sd_bus_attach_event(bus.get(), event, SD_EVENT_PRIORITY_NORMAL) >= 0;
}

int Mctpd::OnMatch(sd_bus_message* message, void* /*self*/, sd_bus_error* /*error*/) {
    if (sd_bus_message_is_method_error(message, nullptr) > 0) {
        board::Log(board::LOG_ERROR, std::string("The bus gives no signals of mctpd: ") +
                                         sd_bus_message_get_error(message)->message);
    }
    return 0;
}

int Mctpd::OnOwner(sd_bus_message* /*message*/, void* self, sd_bus_error* /*error*/) {
    static_cast<Mctpd*>(self)->Change();
    return 0;
}

int Mctpd::OnInterfaces(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    const char* path = nullptr;
    if (sd_bus_message_read_basic(message, 'o', &path) >= 0 && BearsOnEndpoints(path)) {
        static_cast<Mctpd*>(self)->Change();
    }
    return 0;
}

void Mctpd::Change() {
    if (!discovering) {
        discovering = true;
        listener.onDiscovery();
    }
    call.reset(); // its answer would be older than this change
    WaitFor(quiet);
}

void Mctpd::WaitFor(std::uint64_t microseconds) {
    sd_event_source_set_time_relative(timer.get(), microseconds);
    sd_event_source_set_enabled(timer.get(), SD_EVENT_ONESHOT);
}

int Mctpd::OnQuiet(sd_event_source* /*source*/, std::uint64_t /*now*/, void* self) {
    static_cast<Mctpd*>(self)->AskForObjects();
    return 0;
}

void Mctpd::AskForObjects() {
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(bus.get(), &made, service, root, objectManager,
                                       "GetManagedObjects") < 0) {
        return; // the bus is gone, and with it the daemon
    }
    const std::unique_ptr<sd_bus_message, UnrefWith<sd_bus_message_unref>> question(made);
    sd_bus_message_set_auto_start(question.get(), 0);
    sd_bus_slot* asked = nullptr;
    if (sd_bus_call_async(bus.get(), &asked, question.get(), OnObjects, this, 0) >= 0) {
        call.reset(asked);
    }
}

int Mctpd::OnObjects(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    static_cast<Mctpd*>(self)->TakeObjects(message);
    return 0;
}

void Mctpd::TakeObjects(sd_bus_message* reply) {
    std::optional<std::vector<Endpoint>> endpoints;
    if (sd_bus_message_is_method_error(reply, nullptr) <= 0) {
        endpoints = ReadEndpoints(reply);
    } else if (IsAway(reply)) {
        endpoints.emplace();
    }
    if (!endpoints) {
        const sd_bus_error* const error = sd_bus_message_get_error(reply);
        const char* const reason = error == nullptr || error->message == nullptr
                                       ? "an answer of another form"
                                       : error->message;
        board::Log(board::LOG_WARNING, std::string("mctpd doesn't tell its objects: ") + reason);
        WaitFor(retryPause);
        return;
    }
    discovering = false;
    listener.onEndpoints(std::move(*endpoints));
}

} // namespace mctplink
