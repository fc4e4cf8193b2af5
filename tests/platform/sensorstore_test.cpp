#include <sensorstore_reader.hpp>

#include <gtest/gtest.h>

#include <memory>

namespace {

const std::string path = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_1";

SensorStoreValue Reading(int32_t value) {
    return SensorStoreValue(std::in_place_type<int32_t>, value);
}

TEST(SensorStore, KeepsWhatAProbeObjectReportsForAsLongAsItLives) {
    auto cluster = std::make_unique<SensorStoreCluster>();
    cluster->PropertyChanged(path, "ProbeReading", Reading(41));
    cluster->PropertyChanged(path, "ProbeReading", Reading(42));

    EXPECT_EQ(sensorstore_find_value(path, "ProbeReading"), Reading(42));
    EXPECT_EQ(sensorstore_find_value(path, "ProbeStatus"), std::nullopt);
    {
        SensorStoreCluster another;
        another.PropertyChanged(path, "ProbeStatus", Reading(2));
        another.PropertyChanged(path, "ProbeStatus", Reading(3));
    }
    EXPECT_EQ(sensorstore_find_value(path, "ProbeReading"), Reading(42));

    cluster.reset();
    EXPECT_EQ(sensorstore_find_value(path, "ProbeReading"), std::nullopt);
}

TEST(SensorStore, TakesValuesOfACreatedObjectOnly) {
    EXPECT_NE(sensorstore_probeobj_set_property(path, "ProbeReading", Reading(1)), 0);
    ASSERT_EQ(sensorstore_probeobj_create(path, {{"ProbeReading", Reading(1)}}), 0);
    EXPECT_NE(sensorstore_probeobj_create(path, {{"ProbeReading", Reading(9)}}), 0);
    EXPECT_EQ(sensorstore_find_value(path, "ProbeReading"), Reading(1));

    EXPECT_EQ(sensorstore_probeobj_set_property(path, "ProbeReading", Reading(2)), 0);
    EXPECT_NE(sensorstore_probeobj_set_property(path, "ProbeReading", std::string("3")), 0)
        << "another type";
    EXPECT_EQ(sensorstore_find_value(path, "ProbeReading"), Reading(2));

    EXPECT_EQ(sensorstore_probeobj_remove(path), 0);
    EXPECT_NE(sensorstore_probeobj_remove(path), 0);
    EXPECT_EQ(sensorstore_find_value(path, "ProbeReading"), std::nullopt);
}

TEST(SensorStore, ResolvesAKeyToTheObjectLastSet) {
    EXPECT_NE(SensorStoreKeys::set_key("", "ProbeObj", path, sensorstore_service()), 0);
    EXPECT_NE(SensorStoreKeys::set_key("Key.1", "ProbeObj", "", sensorstore_service()), 0);
    EXPECT_FALSE(sensorstore_find_object("Key.1"));

    ASSERT_EQ(SensorStoreKeys::set_key("Key.1", "ProbeObj", "/old", sensorstore_service()), 0);
    ASSERT_EQ(SensorStoreKeys::set_key("Key.1", "ProbeObj", path, sensorstore_service()), 0);
    const auto object = sensorstore_find_object("Key.1");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->type, "ProbeObj");
    EXPECT_EQ(object->path, path);
    EXPECT_EQ(object->service, "com.korv.zenth.vantricd");

    EXPECT_EQ(SensorStoreKeys::remove("Key.1"), 0);
    EXPECT_NE(SensorStoreKeys::remove("Key.1"), 0);
    EXPECT_FALSE(sensorstore_find_object("Key.1"));
}

} // namespace
