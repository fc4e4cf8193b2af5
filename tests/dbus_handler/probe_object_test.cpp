/** The probe object and the sensor data cache, cached and not. */
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
    Probe() {
        refusedProperties.clear();
        TakeStoreCalls();
    }

    std::size_t SignalCount() {
        client.Settle(service);
        return client.TakeSignals().size();
    }

    Bag bag{{"Key", std::string("K")},
            {"ObjectStatus", std::uint8_t{6}},
            {"ProbeReading", std::int32_t{0}}};
};

TEST_F(Probe, GoesToTheCacheAsAWholeWhenItIsCached) {
    {
        ProbeObject object(bus, "/p", bag);
        EXPECT_EQ((Texts{"cluster", "create /p Key=1:K ObjectStatus=5:6 ProbeReading=0:0",
                         "changed /p Key=1:K", "set_key K ProbeObj /p store",
                         "changed /p ObjectStatus=5:6"}),
                  TakeStoreCalls());
        EXPECT_EQ(1U, SignalCount()) << "ObjectStatus; the key never changes for clients";
        TakeLog();
    }
    EXPECT_EQ((Texts{"remove_key K", "remove /p", "~cluster"}), TakeStoreCalls());
    const auto log = TakeLog();
    ASSERT_EQ(1U, log.size());
    EXPECT_TRUE(log[0].starts_with("9 ")) << log[0];
}

TEST_F(Probe, OffersEachWriteToTheCacheWhenItIsCached) {
    ProbeObject object(bus, "/p", bag);
    TakeStoreCalls();
    SignalCount();
    EXPECT_EQ(7, object.probeReading(7));
    EXPECT_EQ(7, object.probeReading(7));
    EXPECT_EQ((Texts{"set /p ProbeReading=0:7", "changed /p ProbeReading=0:7",
                     "set /p ProbeReading=0:7"}),
              TakeStoreCalls());
    EXPECT_EQ(1U, SignalCount());

    refusedProperties = {"ProbeStatus", "Key"};
    EXPECT_EQ(0, object.probeStatus(2));
    EXPECT_EQ(0, object.probeStatus());
    EXPECT_EQ("K", object.key("L"));
    EXPECT_EQ((Texts{"set /p ProbeStatus=5:2", "set /p Key=1:L"}), TakeStoreCalls());
    EXPECT_EQ(0U, SignalCount());
}

TEST_F(Probe, OnlyReportsItsChangesWhenItIsNotCached) {
    bag.emplace("meta-NonCached", std::string("K"));
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
    EXPECT_EQ((Texts{"set /p ProbeThresholds=2:6;5;4;3;2;1;",
                     "changed /p ProbeThresholds=2:6;5;4;3;2;1;"}),
              TakeStoreCalls());
    EXPECT_NE("", client.SetProperty(service, "/p", interface, "Key", std::string("L")).error);
    EXPECT_EQ(Texts{}, TakeStoreCalls());
}

TEST_F(Probe, ReportsEveryPropertyInItsOwnType) {
    bag = {{"meta-NonCached", std::string()}};
    ProbeObject object(bus, "/p", bag);
    TakeStoreCalls();
    object.subType(1);
    object.unitModifier(2);
    object.probeCapabilities(3);
    object.probeLocation("4");
    object.reAliasedName("5");
    object.targetDevKey("6");
    object.friendlyLDID("7");
    object.sensorNumber(8);
    object.entityID(9);
    object.type1MinReadingRange(10);
    object.type1MaxReadingRange(11);
    object.objectStatus(12);
    object.probeStatus(13);
    EXPECT_EQ((Texts{"changed /p SubType=4:1", "changed /p UnitModifier=5:2",
                     "changed /p ProbeCapabilities=3:3", "changed /p ProbeLocation=1:4",
                     "changed /p ReAliasedName=1:5", "changed /p TargetDevKey=1:6",
                     "changed /p FriendlyLDID=1:7", "changed /p SensorNumber=4:8",
                     "changed /p EntityID=5:9", "changed /p Type1MinReadingRange=5:10",
                     "changed /p Type1MaxReadingRange=5:11", "changed /p ObjectStatus=5:12",
                     "changed /p ProbeStatus=5:13"}),
              TakeStoreCalls());
}

} // namespace

} // namespace vantric::test
