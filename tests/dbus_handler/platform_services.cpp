// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/platform_services.hpp"

#include "support/check.hpp"

#include <sdbusplus/message.hpp>

#include <utility>

namespace vantric::test {

PlatformServices::PlatformServices() {
    sd_bus* bus = nullptr;
    Check("sd_bus_open_system", sd_bus_open_system(&bus));
    Check("sd_bus_add_filter", sd_bus_add_filter(bus, nullptr, OnMessage, this));
    for (const char* name : {"xyz.openbmc_project.EntityManager", "com.korv.bmc.arp.arp"}) {
        Check(name, sd_bus_request_name(bus, name, 0));
    }
    thread = std::thread([this, bus] {
        while (!stopped) {
            constexpr std::uint64_t lookAgain = 5000; // us
            if (sd_bus_process(bus, nullptr) == 0) {
                sd_bus_wait(bus, lookAgain);
            }
        }
        sd_bus_flush_close_unref(bus);
    });
}

PlatformServices::~PlatformServices() {
    stopped = true;
    thread.join();
}

void PlatformServices::Set(const std::string& path, Answer answer) {
    const std::lock_guard lock(mutex);
    answers.insert_or_assign(path, std::move(answer));
}

void PlatformServices::InNextRead(std::function<void()> happens) {
    const std::lock_guard lock(mutex);
    inNextRead = std::move(happens);
}

std::vector<std::string> PlatformServices::TakeReads() {
    const std::lock_guard lock(mutex);
    return std::exchange(reads, {});
}

int PlatformServices::OnMessage(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    if (sd_bus_message_is_method_call(message, "org.freedesktop.DBus.Properties", "Get") <= 0) {
        return 0;
    }
    auto& services = *static_cast<PlatformServices*>(self);
    const std::string path = sd_bus_message_get_path(message);
    const char* interface = nullptr;
    const char* property = nullptr;
    sd_bus_message_read(message, "ss", &interface, &property);
    std::unique_lock lock(services.mutex);
    services.reads.push_back(std::string(sd_bus_message_get_destination(message)) + " " + path +
                             " " + interface + " " + property);
    const auto answer = services.answers.find(path);
    if (answer == services.answers.end()) {
        return 0; // sd-bus says that there is no such object
    }
    const Answer decided = answer->second;
    const auto happens = std::exchange(services.inNextRead, {});
    lock.unlock();
    if (happens) {
        happens();
    }
    sd_bus_message* raw = nullptr;
    if (sd_bus_message_new_method_return(message, &raw) >= 0) {
        sdbusplus::message_t(raw).append(decided);
        sd_bus_send(nullptr, raw, nullptr);
        sd_bus_message_unref(raw);
    }
    return 1;
}

} // namespace vantric::test
