// SPDX-License-Identifier: Apache-2.0
/** What the probe object tells the sensor data cache. */
#include "dbus_handler/probe_object.hpp"
#include "interfaces/served_bus.hpp"

#include <sensorstore.hpp>

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
using Bag = PropertyBag<bindings::ProbeObj>;

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

int sensorstore_probeobj_create(const std::string& path,
                                const std::map<std::string, SensorStoreValue>& /*values*/) {
    calls.push_back("create " + path);
    return 0;
}

int sensorstore_probeobj_set_property(const std::string& path, const std::string& property,
                                      const SensorStoreValue& /*value*/) {
    calls.push_back("set " + path + " " + property);
    return 0;
}

int sensorstore_probeobj_remove(const std::string& path) {
    calls.push_back("remove " + path);
    return 0;
}

std::string sensorstore_service() {
    return "store";
}

namespace vantric::test {

namespace {

class Probe : public ServedBus {
protected:
    Probe() { TakeStoreCalls(); }

    std::size_t SignalCount() {
        client.Settle(service);
        return client.TakeSignals().size();
    }

    const Bag bag{{"Key", std::string("K")},
                  {"ObjectStatus", std::uint8_t{6}},
                  {"ProbeReading", std::int32_t{0}},
                  {"meta-NonCached", std::string("K")}};
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
    constexpr auto interface = ProbeObject::interface;
    const ProbeThresholds thresholds{6, 5, 4, 3, 2, 1};
    EXPECT_EQ("",
              client.SetProperty(service, "/p", interface, "ProbeThresholds", thresholds).error);
    EXPECT_EQ(Texts{"changed /p ProbeThresholds=2:6;5;4;3;2;1;"}, TakeStoreCalls());
    EXPECT_NE("", client.SetProperty(service, "/p", interface, "Key", std::string("L")).error);
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
