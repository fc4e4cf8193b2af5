// SPDX-License-Identifier: Apache-2.0
/** What the probe object tells the sensor data cache. */
#include "dbus_handler/log_recorder.hpp"
#include "dbus_handler/probe_object.hpp"
#include "dbus_handler/sensor_store_recorder.hpp"
#include "interfaces/served_bus.hpp"

namespace vantric::test {

namespace {

using Texts = std::vector<std::string>;
using Bag = PropertyBag<bindings::ProbeObj>;

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
