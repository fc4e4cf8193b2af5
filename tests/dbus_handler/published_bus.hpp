// SPDX-License-Identifier: Apache-2.0
/** The process's bus side on a private bus, with a client beside it. */
#pragma once

#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/handlers.hpp"
#include "support/bus_client.hpp"
#include "support/captured_log.hpp"

#include "dbus_handler/channel_publisher.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace vantric::test {

/** The singleton lives as long as the executable; every test begins and ends with no objects and
 *  fresh numbering. main() in bus_main.cpp makes the bus and the singleton. */
class PublishedBus : public testing::Test {
protected:
    static constexpr auto service = "com.korv.zenth.vantricd";
    static constexpr auto sensorsRoot = "/xyz/openbmc_project/sensors";
    static constexpr auto inventoryRoot = "/xyz/openbmc_project/inventory/system";
    static constexpr auto card = "NIC.Slot.3";

    PublishedBus() {
        client.Serve(sdeventplus::Event::get_default().get());
        TakeLog();
    }
    ~PublishedBus() override {
        for (const char* ldid : {card, "NIC.Slot.7", "NIC.Embedded.1", "ProcAccelerator.Slot.5-1",
                                 "CXLMemory.Slot.5"}) {
            objects.Clear({ldid, 0, CLEAR_ALL});
        }
        objects.ForgetNumbering({});
        client.Settle(service);
    }

    /** Hands a copy of the record to a handler, on this thread. */
    template <typename Handler>
    int Do(Handler handle, typename Handler::Record record) {
        return handle.Function(nullptr, new auto(std::move(record)), sizeof record);
    }

    /** The signals that were sent since the last call. */
    std::vector<Signal> Sent() {
        client.Settle(service);
        return client.TakeSignals();
    }

    /** "Property=value" for each PropertiesChanged of the object since the last call, in order. */
    std::vector<std::string> Changes(const std::string& path);

    /** The interfaces that InterfacesAdded or InterfacesRemoved told of for the object, among the
     *  signals. */
    static std::vector<std::string> Told(const std::vector<Signal>& signals,
                                         const std::string& member, const std::string& path);

    /** The properties of an object, through its object manager; empty if there is none. */
    Interfaces Object(const char* root, const std::string& path);

    /** A property of an object. */
    std::string Property(const std::string& path, const char* interface, const char* name) {
        return client.GetProperty(service, path, interface, name);
    }

    PublishedObjects& objects = DBusHandler::instance().Objects();
    ChannelPublisher publisher;
    BusClient client;
};

/** The last part of an interface's name. */
std::string Short(const std::string& interface);

/** A temperature sensor of a card in slot 3, on port 1; id 5, kind 1. */
SensorInsertRequest CardSensor(std::uint8_t kind = SENSOR_KIND_THERMAL_PROBE, std::uint16_t id = 5);

/** Where CardSensor is published. */
std::string CardSensorPath(std::uint16_t id = 5);

/** A reading of CardSensor. */
SensorValueRequest Reading(double value, std::uint8_t kind = SENSOR_KIND_THERMAL_PROBE,
                           std::uint16_t id = 5);

} // namespace vantric::test
