// SPDX-License-Identifier: Apache-2.0
#include "support/bus_client.hpp"

#include "support/check.hpp"
#include "support/message_text.hpp"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

#include <poll.h>

namespace vantric::test {

namespace {

using Clock = std::chrono::steady_clock;

std::string OrEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

/** The text of an answer.
 *  @throws std::runtime_error if it is an error. */
std::string GoodText(const Answer& answer) {
    if (!answer.error.empty()) {
        throw std::runtime_error(answer.error + ": " + answer.text);
    }
    return answer.text;
}

/** Goes into the next container of the message if it isn't at the end. */
bool Enter(sd_bus_message* message, char type, const char* contents) {
    return Check("sd_bus_message_enter_container",
                 sd_bus_message_enter_container(message, type, contents)) > 0;
}

void Exit(sd_bus_message* message) {
    Check("sd_bus_message_exit_container", sd_bus_message_exit_container(message));
}

std::string ReadText(sd_bus_message* message, char type) {
    const char* text = nullptr;
    Check("sd_bus_message_read_basic", sd_bus_message_read_basic(message, type, &text));
    return text;
}

/** Reads a dictionary. contents is the type of its entries, and the key is of the type keyType. */
template <typename ReadValue>
auto ReadDictionary(sd_bus_message* message, const std::string& contents, char keyType,
                    ReadValue readValue) {
    std::map<std::string, decltype(readValue())> entries;
    Enter(message, 'a', contents.c_str());
    const std::string entry = contents.substr(1, contents.size() - 2);
    while (Enter(message, 'e', entry.c_str())) {
        auto key = ReadText(message, keyType);
        entries.emplace(std::move(key), readValue());
        Exit(message);
    }
    Exit(message);
    return entries;
}

} // namespace

BusClient::BusClient() {
    sd_bus* opened = nullptr;
    Check("sd_bus_open_system", sd_bus_open_system(&opened));
    bus.reset(opened);
    buses.push_back(opened);
    Check("sd_bus_add_match",
          sd_bus_add_match(opened, nullptr, "type='signal'", &BusClient::OnSignal, this));
}

void BusClient::Serve(sd_bus* served) {
    buses.push_back(served);
}

void BusClient::Serve(sd_event* served) {
    events.push_back(served);
}

bool BusClient::WaitUntil(const std::function<bool()>& done) {
    const auto deadline = Clock::now() + patience;
    while (!done()) {
        if (Clock::now() >= deadline) {
            return false;
        }
        if (!Work()) {
            WaitForWork(deadline);
        }
    }
    return true;
}

std::string BusClient::GetProperty(const char* service, const std::string& path,
                                   const char* interface, const char* property) {
    return GoodText(
        Call(service, path, "org.freedesktop.DBus.Properties", "Get", interface, property));
}

std::map<std::string, Interfaces> BusClient::GetManagedObjects(const char* service,
                                                               const std::string& path) {
    GoodText(Call(service, path, "org.freedesktop.DBus.ObjectManager", "GetManagedObjects"));
    sd_bus_message* message = answer.get();
    Check("sd_bus_message_rewind", sd_bus_message_rewind(message, true));
    return ReadDictionary(message, "{oa{sa{sv}}}", 'o', [&] {
        return ReadDictionary(message, "{sa{sv}}", 's', [&] {
            return ReadDictionary(message, "{sv}", 's', [&] { return ValueText(message); });
        });
    });
}

void BusClient::Settle(const char* service) {
    GoodText(Call(service, "/", "org.freedesktop.DBus.Peer", "Ping"));
}

std::vector<Signal> BusClient::TakeSignals() {
    return std::exchange(signals, {});
}

int BusClient::OnSignal(sd_bus_message* message, void* self, sd_bus_error*) {
    if (OrEmpty(sd_bus_message_get_sender(message)) == "org.freedesktop.DBus") {
        return 0;
    }
    std::string body;
    try {
        body = MessageText(message);
    } catch (const std::exception& e) {
        body = e.what(); // sd-bus knows no exceptions; the text fails the comparison.
    }
    static_cast<BusClient*>(self)->signals.push_back(
        {OrEmpty(sd_bus_message_get_path(message)), OrEmpty(sd_bus_message_get_interface(message)),
         OrEmpty(sd_bus_message_get_member(message)), std::move(body)});
    return 0;
}

int BusClient::OnAnswer(sd_bus_message* message, void* self, sd_bus_error*) {
    static_cast<BusClient*>(self)->answer.reset(sd_bus_message_ref(message));
    return 0;
}

sd_bus_message* BusClient::NewCall(const char* service, const std::string& path,
                                   const char* interface, const char* method) {
    sd_bus_message* message = nullptr;
    Check("sd_bus_message_new_method_call",
          sd_bus_message_new_method_call(bus.get(), &message, service, path.c_str(), interface,
                                         method));
    call.reset(sd_bus_message_ref(message));
    return message;
}

sd_bus_message* BusClient::NewSignal(const std::string& path, const char* interface,
                                     const char* member) {
    sd_bus_message* message = nullptr;
    Check("sd_bus_message_new_signal",
          sd_bus_message_new_signal(bus.get(), &message, path.c_str(), interface, member));
    call.reset(sd_bus_message_ref(message));
    return message;
}

void BusClient::Post() {
    Check("sd_bus_send", sd_bus_send(bus.get(), call.get(), nullptr));
    Check("sd_bus_flush", sd_bus_flush(bus.get()));
}

Answer BusClient::Send() {
    answer.reset();
    sd_bus_slot* slot = nullptr;
    Check("sd_bus_call_async",
          sd_bus_call_async(bus.get(), &slot, call.get(), &BusClient::OnAnswer, this, 0));
    const bool answered = WaitUntil([this] { return answer != nullptr; });
    sd_bus_slot_unref(slot);
    if (!answered) {
        throw std::runtime_error("no answer to " + OrEmpty(sd_bus_message_get_member(call.get())));
    }
    if (const auto* error = sd_bus_message_get_error(answer.get()); error != nullptr) {
        return {OrEmpty(error->name), OrEmpty(error->message)};
    }
    return {"", MessageText(answer.get())};
}

/** Does what there is to do without waiting. Returns whether there was something. */
bool BusClient::Work() {
    bool worked = false;
    for (auto* one : buses) {
        worked |= Check("sd_bus_process", sd_bus_process(one, nullptr)) > 0;
    }
    for (auto* one : events) {
        worked |= Check("sd_event_run", sd_event_run(one, 0)) > 0;
    }
    return worked;
}

void BusClient::WaitForWork(Clock::time_point deadline) {
    std::vector<pollfd> fds;
    for (auto* one : buses) {
        fds.push_back({.fd = sd_bus_get_fd(one),
                       .events = static_cast<short>(sd_bus_get_events(one)),
                       .revents = 0});
    }
    for (auto* one : events) {
        fds.push_back({.fd = sd_event_get_fd(one), .events = POLLIN, .revents = 0});
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    // The condition may also come from another thread, which wakes no descriptor here.
    constexpr std::chrono::milliseconds longest{5};
    poll(fds.data(), fds.size(), static_cast<int>(std::clamp(left, left.zero(), longest).count()));
}

} // namespace vantric::test
