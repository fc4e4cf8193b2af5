// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/dbus_handler.hpp"

#include "common/log.hpp"
#include "common/process_flags.hpp"
#include "dbus_handler/platform_callbacks.hpp"
#include "vocabulary/device_classes.hpp"

#include <oneway_channel.hpp>
#include <sdbusplus/exception.hpp>
#include <systemd/sd-bus.h>

#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <thread>
#include <utility>

namespace vantric {

namespace {

constexpr auto serviceName = "com.korv.zenth.vantricd";

/** Returns the calling thread's connection to the system bus, or null. The caller owns the
 *  reference. */
sd_bus* OpenSystemBus() {
    sd_bus* opened = nullptr;
    return sd_bus_default_system(&opened) < 0 ? nullptr : opened;
}

/** The bus rule that fits the signals with all these keys and values. */
std::string MatchRule(std::initializer_list<std::pair<const char*, const char*>> pieces) {
    std::string rule;
    for (const auto& [key, value] : pieces) {
        rule.append(key).append("='").append(value).append("',");
    }
    return rule;
}

} // namespace

DBusHandler& DBusHandler::instance() {
    static DBusHandler handler;
    return handler;
}

DBusHandler::DBusHandler()
    : connection(OpenSystemBus()),
      bus(std::make_shared<sdbusplus::bus_t>(connection, std::false_type())),
      event(sdeventplus::Event::get_default()), inventoryManager(*bus, inventoryRoot.data()),
      sensorsManager(*bus, sensorsRoot.data()), objects(connection, bus), loopExit(event.get()) {
    try {
        constexpr auto mayTakeAndLose =
            SD_BUS_NAME_REPLACE_EXISTING | SD_BUS_NAME_ALLOW_REPLACEMENT;
        const int named = sd_bus_request_name(connection, serviceName, mayTakeAndLose);
        if (named < 0) {
            throw sdbusplus::exception::SdBusError(-named, "sd_bus_request_name");
        }
        bus->attach_event(event.get(), 0);
        sd_bus_set_exit_on_disconnect(connection, true);
        if (OneWayChannel::GetInstance().RegisterEventLoop(event, nullptr, {}) != 0) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed to register one way channel\n");
        }
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Caught an exception: %s\n", error.what());
    }
}

int DBusHandler::Run() {
    StartThread("dbusEventHandler", [this] { RegisterForDBUSEvents(); }).detach();
    if (connection == nullptr) {
        return EXIT_FAILURE; // no signal will ever say so
    }
    try {
        return event.loop();
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Caught an exception: %s\n", error.what());
        return EXIT_FAILURE;
    }
}

void DBusHandler::RegisterForDBUSEvents() {
    sd_bus* const own = OpenSystemBus();
    std::optional<sdbusplus::bus_t> signals;
    try {
        signals.emplace(own, std::false_type());
        const auto loop = sdeventplus::Event::get_new();
        signals->attach_event(loop.get(), 0);
        sd_bus_set_exit_on_disconnect(own, true);
        signalMatches.push_back(std::make_unique<sdbusplus::bus::match_t>(
            *signals,
            MatchRule({{"type", "signal"},
                       {"member", "InterfacesAdded"},
                       {"path", "/xyz/openbmc_project/inventory"},
                       {"interface", "org.freedesktop.DBus.ObjectManager"}}),
            FRUEventCallback));
        signalMatches.push_back(std::make_unique<sdbusplus::bus::match_t>(
            *signals,
            MatchRule({{"type", "signal"},
                       {"member", "PropertiesChanged"},
                       {"path_namespace", "/xyz/openbmc_project/state/host0"},
                       {"interface", "org.freedesktop.DBus.Properties"}}),
            HostPowerStatusCB));
        {
            const std::lock_guard lock(dbusReadyMutex);
            dbusReady = true;
        }
        dbusReadyCond.notify_all();
        while (true) {
            loop.run(std::nullopt);
        }
    } catch (...) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Got an exception!!!\n");
    }
    if (own != nullptr && sd_bus_is_open(own) <= 0) {
        loopExit.Demand(); // without its signals the process would serve a world that has gone on
    }
}

} // namespace vantric
