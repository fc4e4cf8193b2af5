#include "monitor/bus_watcher.hpp"

#include "fake_service.hpp"
#include "support/private_bus.hpp"

namespace {

using namespace monitor;
using namespace monitor::test;

class BusWatcherTest : public testing::Test {
protected:
    /// A property as the watcher knows it, or the other value.
    template <typename Value>
    Value Known(const std::string& path, const char* interface, const char* property,
                Value other) const {
        const auto object = watcher.Model().Objects().find(path);
        if (object == watcher.Model().Objects().end()) {
            return other;
        }
        const auto* value = object->second.Get<Value>(interface, property);
        return value == nullptr ? other : *value;
    }

    std::int64_t Reading() const {
        return Known<std::int64_t>(FakeService::sensor, probeInterface, "ProbeReading", -1);
    }

    StateDetails Details() const {
        return Known(FakeService::state, stateInterface, "StateSensorDetails", StateDetails());
    }

    vantric::test::PrivateBus privateBus;
    TestLoop loop;
    BusHandle bus = loop.Connect();
    std::unique_ptr<FakeService> service; // before the watcher in some tests, after it in others
    BusWatcher watcher{bus.get()};
};

TEST_F(BusWatcherTest, FindsTheObjectsOfAServiceThatComesAndForgetsThemWhenItGoes) {
    ASSERT_TRUE(loop.RunUntil([&] { return watcher.Complete(); }));
    EXPECT_FALSE(watcher.ServicePresent());
    EXPECT_FALSE(watcher.Model().EverPublished());

    service = std::make_unique<FakeService>(loop);
    ASSERT_TRUE(loop.RunUntil([&] { return watcher.Model().Objects().size() == 2; }));
    EXPECT_TRUE(watcher.ServicePresent());
    EXPECT_EQ(Reading(), 12);
    EXPECT_EQ(watcher.Misunderstood(), 0U);

    service.reset();
    ASSERT_TRUE(loop.RunUntil([&] { return watcher.Model().Objects().empty(); }));
    EXPECT_FALSE(watcher.ServicePresent());
    EXPECT_TRUE(watcher.Model().EverPublished());
}

TEST_F(BusWatcherTest, FollowsChangesAdditionsAndRemovals) {
    service = std::make_unique<FakeService>(loop);
    ASSERT_TRUE(loop.RunUntil([&] { return Reading() == 12; }));

    service->probe->probeReading(34);
    ASSERT_TRUE(loop.RunUntil([&] { return Reading() == 34; }));

    service->stateSensor->stateSensorDetails({{"Link", {"Link State", "Connected"}}});
    const StateDetails expected{{"Link", {"Link State", "Connected"}}};
    ASSERT_TRUE(loop.RunUntil([&] { return Details() == expected; }));

    service->RemoveProbe();
    ASSERT_TRUE(loop.RunUntil([&] { return Reading() == -1; }));
    EXPECT_EQ(watcher.Model().Objects().size(), 1U);

    service->PublishProbe();
    ASSERT_TRUE(loop.RunUntil([&] { return Reading() == 12; }));
}

TEST_F(BusWatcherTest, CountsWhatItCannotUnderstand) {
    service = std::make_unique<FakeService>(loop);
    ASSERT_TRUE(loop.RunUntil([&] { return Reading() == 12; }));
    ASSERT_LE(0,
              sd_bus_emit_signal(service->handle.get(), "/xyz/openbmc_project/sensors",
                                 "org.freedesktop.DBus.ObjectManager", "InterfacesAdded", "u", 7U));
    ASSERT_TRUE(loop.RunUntil([&] { return watcher.Misunderstood() == 1; }));
    service->probe->probeReading(56);
    ASSERT_TRUE(loop.RunUntil([&] { return Reading() == 56; }));
}

} // namespace
