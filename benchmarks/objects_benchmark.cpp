// SPDX-License-Identifier: Apache-2.0
/** Objects on a bus of their own: look-up, creation, update. */
#include "dbus_handler/dbus_handler.hpp"
#include "dbus_handler/find_object.hpp"
#include "support/private_bus.hpp"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace vantric {
namespace {

constexpr auto ldid = "NIC.Slot.3";

SensorInsertRequest InsertRequest(int id) {
    SensorInsertRequest request;
    request.sensor.sensorKind = SENSOR_KIND_THERMAL_PROBE;
    request.sensor.baseUnit = BASE_UNIT_DEGREES_C;
    request.sensor.sensorId = static_cast<std::uint16_t>(id);
    request.sensor.entityType = 6;
    request.sensor.upperWarning = 90;
    request.sensor.upperCritical = 100;
    request.objectPath =
        "/xyz/openbmc_project/sensors/temperature/NIC.Slot.3_sensorid_" + std::to_string(id);
    request.deviceLdid = ldid;
    request.inventoryPath = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3";
    request.entityName = "networkcontroller";
    request.slot = 3;
    return request;
}

void FindObjectAmong(benchmark::State& state) {
    const auto count = state.range(0);
    ObjectStore<int> store;
    for (int id = 1; id <= count; ++id) {
        store[ldid]["/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_" +
                    std::to_string(id)] = std::make_shared<int>(id);
    }
    const std::string key = "_sensorid_" + std::to_string(count / 2 + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(FindObject(store, ldid, key));
    }
}
BENCHMARK(FindObjectAmong)->Arg(1)->Arg(40)->Arg(100);

void CreateAndRemoveObject(benchmark::State& state) {
    auto& objects = DBusHandler::instance().Objects();
    const SensorInsertRequest request = InsertRequest(1);
    for (auto _ : state) {
        objects.InsertSensor(request);
        objects.Clear({ldid, 0, CLEAR_SENSORS});
    }
}
BENCHMARK(CreateAndRemoveObject);

/** One reading written to one of range(0) objects. changing: whether it differs each time. */
void UpdateObject(benchmark::State& state, bool changing) {
    auto& objects = DBusHandler::instance().Objects();
    for (int id = 1; id <= state.range(0); ++id) {
        objects.InsertSensor(InsertRequest(id));
    }
    SensorValueRequest request;
    request.deviceLdid = ldid;
    request.pathText = "_sensorid_" + std::to_string(state.range(0));
    request.sensorKind = SENSOR_KIND_THERMAL_PROBE;
    request.value = 40;
    for (auto _ : state) {
        if (changing) {
            request.value = request.value == 40 ? 41 : 40;
        }
        objects.SetSensorValue(request);
    }
    objects.Clear({ldid, 0, CLEAR_SENSORS});
}
BENCHMARK_CAPTURE(UpdateObject, unchanged, false)->Arg(1)->Arg(100);
BENCHMARK_CAPTURE(UpdateObject, changed, true)->Arg(1)->Arg(100);

} // namespace
} // namespace vantric

int main(int argc, char** argv) {
    const vantric::test::PrivateBus bus;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
