// SPDX-License-Identifier: Apache-2.0
/** Every row of the thermal typing, and what stands right beside its ranges. */
#include "dbus_handler/thermal_typing.hpp"

#include <gtest/gtest.h>

namespace vantric {

namespace {

using Numbers = InstanceCounters;
using enum bindings::ThermalSensor::dev_types;

struct Row {
    DeviceClass deviceClass;
    std::vector<std::uint16_t> entities;
    std::vector<std::uint16_t> ids;
    bool ocp;
    ThermalType type;
    PciIdentity identity{.vendorId = 0x15B3, .subVendorId = 0x15B3};
};

const ThermalType nicAsic{NIC_ASIC, &Numbers::nicAsicInstance, SENSOR_CATEGORY_ASIC};
const ThermalType nicOptics{NIC_OPTICS, &Numbers::nicOpticsInstance, SENSOR_CATEGORY_OPTICS};
const ThermalType ocpAsic{NDC_ASIC, &Numbers::ndcAsicInstance, SENSOR_CATEGORY_NONE, "OCP3"};
const ThermalType ocpOptics{NDC_OPTICS, &Numbers::ndcOpticsInstance, SENSOR_CATEGORY_NONE, "OCP3"};
const ThermalType lomAsic{NDC_ASIC, &Numbers::ndcAsicInstance, SENSOR_CATEGORY_ASIC, "EmbeddedLOM"};
const ThermalType lomOptics{NDC_OPTICS, &Numbers::ndcOpticsInstance, SENSOR_CATEGORY_OPTICS,
                            "EmbeddedLOM"};
const ThermalType nicOther{UNKNOWN, &Numbers::nicOtherInstance};

const std::vector<std::uint16_t> asics{60, 135, 144, 155, 185, 187, 300, 301, 302};
const std::vector<std::uint16_t> optics{200, 250, 299};
const std::vector<std::uint16_t> others{0, 59, 61, 79, 81, 134, 156, 184, 186, 188, 199, 303};
constexpr auto network = DEVICE_CLASS_NETWORK;
constexpr auto embedded = DEVICE_CLASS_EMBEDDED_NIC;
constexpr auto cxl = DEVICE_CLASS_CXL;
constexpr auto accelerator = DEVICE_CLASS_ACCELERATOR;

const std::vector<Row> rows{
    {network, asics, {1}, false, nicAsic},
    {network, asics, {1}, true, ocpAsic},
    {network, optics, {6}, false, nicOptics},
    {network, optics, {6}, true, ocpOptics},
    {network, others, {1}, true, nicOther},
    {embedded, asics, {1}, false, lomAsic},
    {embedded, asics, {1}, true, lomAsic},
    {embedded, optics, {1}, true, lomOptics},
    {embedded, others, {1}, false, nicOther},
    {network, {80}, {1}, false, nicAsic},
    {network, {80}, {6, 7}, true, ocpOptics},
    {network, {80}, {0, 2, 5, 8}, false, nicOther},
    {network, {80}, {1}, false, nicOther, {.vendorId = 0x15B3, .subVendorId = 0x1028}},
    {network, {80}, {1}, false, nicOther, {.vendorId = 0x8086, .subVendorId = 0x15B3}},
    {embedded, {80}, {1}, false, nicAsic},
    {embedded, {80}, {1}, true, ocpAsic},
    {embedded, {80}, {6, 7}, false, nicOptics},
    {cxl, {66}, {1}, false, {CXL_CMB_SPD, &Numbers::cxlSpdInstance}},
    {cxl, {143}, {1}, false, {CXL_CMB_CTRL, &Numbers::cxlCtrlInstance}},
    {cxl, {65}, {70, 79}, false, {CXL_CMB_DRAM, &Numbers::cxlDramInstance}},
    {cxl, {65}, {69, 80}, false, {CXL_CMB_COMP, &Numbers::cxlCompInstance}},
    {cxl, {64, 67, 142, 60}, {70}, false, {UNKNOWN, &Numbers::cxlOtherInstance}},
    {accelerator, {79, 148, 149, 152, 32836}, {1}, false, {GPU_COMP, &Numbers::gpuCompInstance}},
    {accelerator, {78, 147, 150, 68, 60}, {1}, true, {UNKNOWN, &Numbers::gpuOtherInstance}},
};

void ExpectType(const ThermalType& expected, const ThermalType& type, const std::string& what) {
    EXPECT_EQ(expected.sensorType, type.sensorType) << what;
    EXPECT_EQ(expected.counter, type.counter) << what;
    EXPECT_EQ(expected.category, type.category) << what;
    EXPECT_STREQ(expected.deviceType, type.deviceType) << what;
}

TEST(ThermalType, FollowsDeviceAndEntity) {
    for (const auto& row : rows) {
        for (const auto entity : row.entities) {
            for (const auto id : row.ids) {
                __Sensor sensor;
                sensor.entityType = entity;
                sensor.sensorId = id;
                ExpectType(row.type, ThermalTypeOf(row.deviceClass, sensor, row.identity, row.ocp),
                           std::to_string(row.deviceClass) + " " + std::to_string(entity) + " " +
                               std::to_string(id));
            }
        }
    }
}

TEST(ThermalTyping, RemembersAcceleratorsByKey) {
    ThermalTyping typing;
    EXPECT_EQ(1, typing.ProcAccelNumberOf("a"));
    EXPECT_EQ(2, typing.ProcAccelNumberOf("b"));
    EXPECT_EQ(3, typing.ProcAccelNumberOf("c"));
    // One that comes back puts the count back to its own number.
    EXPECT_EQ(2, typing.ProcAccelNumberOf("b"));
    for (int number = 2; number < 256; ++number) {
        EXPECT_EQ(number, typing.ProcAccelNumberOf(std::to_string(number)));
    }
    EXPECT_EQ(0, typing.ProcAccelNumberOf("one more than the number can tell"));
}

} // namespace

} // namespace vantric
