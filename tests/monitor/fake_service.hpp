/** Publishes objects under the daemon's name, through the daemon's own bindings. */
#pragma once

#include "monitor/interface_names.hpp"
#include "monitor/sd_handles.hpp"
#include "support/eventually.hpp"

#include <com/korv/zenth/PLDM/StateSensor/server.hpp>
#include <com/korv/zenth/Sensor/ProbeObj/server.hpp>

#include <sdbusplus/bus.hpp>
#include <sdbusplus/server/manager.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace monitor::test {

using ProbeObj = sdbusplus::server::com::korv::zenth::sensor::ProbeObj;
using StateSensor = sdbusplus::server::com::korv::zenth::pldm::StateSensor;

/** An event loop, for whatever is attached to it. */
class TestLoop {
public:
    TestLoop() {
        sd_event* raw = nullptr;
        EXPECT_LE(0, sd_event_new(&raw));
        event.reset(raw);
    }

    /** A new connection to the system bus, served by the loop. */
    BusHandle Connect() const {
        sd_bus* raw = nullptr;
        EXPECT_LE(0, sd_bus_open_system(&raw));
        EXPECT_LE(0, sd_bus_attach_event(raw, event.get(), SD_EVENT_PRIORITY_NORMAL));
        return BusHandle(raw);
    }

    /** Turns the loop until done() holds. Returns false if that takes more than 30 s. */
    bool RunUntil(const std::function<bool()>& done) const {
        return vantric::test::Eventually([&] {
            while (sd_event_run(event.get(), 0) > 0) {
            }
            return done();
        });
    }

private:
    EventHandle event;
};

/** The service, with one power sensor and one state sensor. */
class FakeService {
public:
    static constexpr const char* sensor =
        "/xyz/openbmc_project/sensors/power/NIC_Slot_3_sensorid_6";
    static constexpr const char* state =
        "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3/sensor/state/sensorid_9";

    explicit FakeService(const TestLoop& loop)
        : handle(loop.Connect()), bus(handle.get()), sensors(bus, "/xyz/openbmc_project/sensors"),
          inventory(bus, "/xyz/openbmc_project/inventory/system") {
        bus.request_name(serviceName);
        PublishProbe();
        stateSensor =
            std::make_unique<StateSensor>(bus, state,
                                          std::map<std::string, StateSensor::PropertiesVariant>{
                                              {"LDID", std::string("NIC.Slot.3")},
                                              {"FriendlyLDID", std::string("NIC in Slot 3")},
                                              {"SensorID", std::uint32_t{9}},
                                          });
        bus.emit_interfaces_added(state, {StateSensor::interface});
    }

    /** Makes the power sensor with 12 W and announces it. */
    void PublishProbe() {
        probe = std::make_unique<ProbeObj>(
            bus, sensor,
            std::map<std::string, ProbeObj::PropertiesVariant>{
                {"FriendlyLDID", std::string("NIC in Slot 3")},
                {"TargetDevKey", std::string("NIC.Slot.3")},
                {"ProbeLocation", std::string("Board power")},
                {"ProbeReading", std::int32_t{12}},
                {"ProbeStatus", std::uint8_t{2}},
                {"SubType", std::uint32_t{49}},
                {"ProbeThresholds",
                 std::tuple<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                            std::int32_t>(6, 5, 4, 3, 2, 1)},
            });
        bus.emit_interfaces_added(sensor, {ProbeObj::interface});
    }

    /** Withdraws the power sensor. */
    void RemoveProbe() {
        bus.emit_interfaces_removed(sensor, {ProbeObj::interface});
        probe.reset();
    }

    BusHandle handle;
    sdbusplus::bus_t bus;
    sdbusplus::server::manager_t sensors;
    sdbusplus::server::manager_t inventory;
    std::unique_ptr<ProbeObj> probe;
    std::unique_ptr<StateSensor> stateSensor;
};

} // namespace monitor::test
