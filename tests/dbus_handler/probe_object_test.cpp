// SPDX-License-Identifier: Apache-2.0
/** What the probe object tells the sensor data cache, and what clients can't write. */
#include "dbus_handler/probe_object.hpp"
#include "support/bus_client.hpp"
#include "support/private_bus.hpp"

#include <sensorstore.hpp>
#include <xyz/openbmc_project/Sensor/Value/server.hpp>

#include <gtest/gtest.h>

#include <utility>

namespace vantric::test {

namespace {

using Texts = std::vector<std::string>;

/** What the cache was told, each as "name path-or-key more". */
Texts calls;

struct ToText {
    std::string operator()(const std::string& text) const { return text; }
    template <typename Number>
    std::string operator()(Number number) const {
        return std::to_string(number);
    }
    template <typename... Numbers>
    std::string operator()(const std::tuple<Numbers...>& numbers) const {
        return std::apply([](auto... number) { return ((std::to_string(number) + ";") + ...); },
                          numbers);
    }
};

std::string Text(const SensorStoreValue& value) {
    return std::to_string(value.index()) + ":" + std::visit(ToText(), value);
}

/** The calls since the last call of this. */
Texts TakeStoreCalls() {
    return std::exchange(calls, {});
}

} // namespace

} // namespace vantric::test

using vantric::test::calls;

SensorStoreCluster::SensorStoreCluster() {
    calls.push_back("cluster");
}

SensorStoreCluster::~SensorStoreCluster() {
    calls.push_back("~cluster");
}

void SensorStoreCluster::PropertyChanged(const std::string& path, const std::string& property,
                                         const SensorStoreValue& value) {
    calls.push_back("changed " + path + " " + property + "=" + vantric::test::Text(value));
}

int SensorStoreKeys::set_key(const std::string& key, const std::string& type,
                             const std::string& path, const std::string& service) {
    calls.push_back("set_key " + key + " " + type + " " + path + " " + service);
    return 0;
}

int SensorStoreKeys::remove(const std::string& key) {
    calls.push_back("remove_key " + key);
    return 0;
}

int sensorstore_probeobj_create(const std::string& /*path*/,
                                const std::map<std::string, SensorStoreValue>& /*values*/) {
    return 1;
}

int sensorstore_probeobj_set_property(const std::string& /*path*/, const std::string& /*property*/,
                                      const SensorStoreValue& /*value*/) {
    return 1;
}

int sensorstore_probeobj_remove(const std::string& /*path*/) {
    return 1;
}

std::string sensorstore_service() {
    return "store";
}

namespace vantric::test {

namespace {

class Probe : public testing::Test {
protected:
    static constexpr auto service = "test.Service";

    Probe() {
        client.Serve(connection);
        bus.request_name(service);
        TakeStoreCalls();
    }

    static sd_bus* Open() {
        sd_bus* opened = nullptr;
        EXPECT_LE(0, sd_bus_open_system(&opened));
        return opened;
    }

    std::size_t SignalCount() {
        client.Settle(service);
        return client.TakeSignals().size();
    }

    /** Writes a property as a client; returns the error's name. */
    template <typename T>
    std::string Write(const char* interface, const char* property, const T& value) {
        return client.SetProperty(service, "/p", interface, property, value).error;
    }

    const PropertyBag<bindings::ProbeObj> bag{{"Key", std::string("K")},
                                              {"ObjectStatus", std::uint8_t{6}},
                                              {"ProbeReading", std::int32_t{0}},
                                              {"meta-NonCached", std::string("K")}};
    PrivateBus daemon;
    sd_bus* connection = Open();
    sdbusplus::bus_t bus{connection, std::false_type()};
    BusClient client;
};

TEST_F(Probe, ReportsItsChangesAndItsKey) {
    {
        ProbeObject object(bus, "/p", bag);
        EXPECT_EQ((Texts{"cluster", "changed /p Key=1:K", "set_key K ProbeObj /p store",
                         "changed /p ObjectStatus=5:6"}),
                  TakeStoreCalls());
        SignalCount();
        EXPECT_EQ("K", object.key("K"));
        EXPECT_EQ(Texts{"set_key K ProbeObj /p store"}, TakeStoreCalls());
        object.initupdateInProgress(1, true);
        EXPECT_EQ(Texts{"changed /p InitupdateInProgress=4:1"}, TakeStoreCalls());
        EXPECT_EQ(0U, SignalCount());
    }
    EXPECT_EQ((Texts{"remove_key K", "~cluster"}), TakeStoreCalls());
}

TEST_F(Probe, TakesAClientsWriteTheSameWay) {
    ProbeObject object(bus, "/p", bag);
    TakeStoreCalls();
    const ProbeThresholds thresholds{6, 5, 4, 3, 2, 1};
    EXPECT_EQ("", Write(ProbeObject::interface, "ProbeThresholds", thresholds));
    EXPECT_EQ(Texts{"changed /p ProbeThresholds=2:6;5;4;3;2;1;"}, TakeStoreCalls());
}

TEST_F(Probe, RefusesWhatAClientCantWrite) {
    bindings::Value sensor(bus, "/p");
    ProbeObject probe(bus, "/p", bag);
    TakeStoreCalls();
    SignalCount();
    const std::string error = "org.freedesktop.DBus.Error.";
    const std::string text = "5";
    EXPECT_EQ("", Write(bindings::Value::interface, "Unit",
                        std::string("xyz.openbmc_project.Sensor.Value.Unit.Volts")));
    EXPECT_EQ(error + "InvalidArgs", Write(bindings::Value::interface, "Unit", text));
    EXPECT_EQ(error + "InvalidArgs", Write(bindings::Value::interface, "Value", text));
    EXPECT_EQ(error + "PropertyReadOnly", Write(ProbeObject::interface, "ProbeReading", 5));
    EXPECT_EQ(error + "PropertyReadOnly", Write(ProbeObject::interface, "Key", text));
    EXPECT_EQ(error + "UnknownProperty", Write(bindings::Value::interface, "Other", 5.0));
    EXPECT_EQ(bindings::Value::Unit::Volts, sensor.unit());
    EXPECT_EQ(0, sensor.value());
    EXPECT_EQ(0, probe.probeReading());
    EXPECT_EQ(1U, SignalCount());
    EXPECT_EQ(Texts{}, TakeStoreCalls());
}

TEST_F(Probe, ReportsAPropertyInItsOwnType) {
    ProbeObject object(bus, "/p", bag);
    TakeStoreCalls();
    object.subType(1);
    object.unitModifier(2);
    object.probeCapabilities(3);
    object.probeLocation("4");
    EXPECT_EQ((Texts{"changed /p SubType=4:1", "changed /p UnitModifier=5:2",
                     "changed /p ProbeCapabilities=3:3", "changed /p ProbeLocation=1:4"}),
              TakeStoreCalls());
}

} // namespace

} // namespace vantric::test
