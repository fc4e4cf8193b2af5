// SPDX-License-Identifier: Apache-2.0
/** From bytes to records and from raw readings to values. */
#include "common/byte_writer.hpp"
#include "device_transport/device_transport.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/record_parsers.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace vantric {
namespace {

/** Answers every request at once with the bytes it was given. */
class InstantTransport : public DeviceTransport {
public:
    explicit InstantTransport(std::vector<std::uint8_t> answer)
        : DeviceTransport(3, 9), answer(std::move(answer)) {}

    VantricStatus SendPacket(TransportPacket& packet) override {
        const auto count = std::min(answer.size(), packet.responseBytes.size());
        std::copy_n(answer.begin(), count, packet.responseBytes.begin());
        packet.responseLength = static_cast<std::uint32_t>(count);
        return STATUS_SUCCESS;
    }

private:
    std::vector<std::uint8_t> answer;
};

/** A Numeric Sensor PDR with 32-bit readings and thresholds. */
std::vector<std::uint8_t> NumericSensorRecord() {
    ByteWriter body;
    body.Write<std::uint16_t>(0).Write<std::uint16_t>(5);                           // handle, id
    body.Write<std::uint16_t>(300).Write<std::uint16_t>(1).Write<std::uint16_t>(2); // entity
    body.Write<std::uint8_t>(0).Write<std::uint8_t>(0);                             // init, names
    body.Write<std::uint8_t>(2).Write<std::uint8_t>(0);                             // degrees C
    body.Write<std::uint8_t>(0).Write<std::uint32_t>(0); // rate, auxiliary units
    body.Write<std::uint8_t>(0).Write<std::uint8_t>(0).Write<std::uint8_t>(1); // rel, oem, linear
    body.Write<std::uint8_t>(5);                                               // sint32
    body.Write<std::uint32_t>(0x3DCCCCCD).Write<std::uint32_t>(0); // resolution 0.1, offset
    body.Write<std::uint32_t>(0).Write<std::uint32_t>(0); // accuracy, tolerance, hysteresis
    body.Write<std::uint8_t>(0x3F).Write<std::uint8_t>(0);
    body.Write<std::uint64_t>(0); // intervals
    body.Write<std::uint32_t>(1000).Write<std::uint32_t>(0);
    body.Write<std::uint8_t>(5).Write<std::uint8_t>(0x7F);
    for (std::uint32_t slot = 0; slot < 9; ++slot) {
        body.Write<std::uint32_t>(50 + slot);
    }
    const auto bytes = body.Finish();
    ByteWriter record;
    record.Write<std::uint32_t>(1).Write<std::uint8_t>(1).Write<std::uint8_t>(2);
    record.Write<std::uint16_t>(0).Write(static_cast<std::uint16_t>(bytes.size()));
    for (const std::uint8_t byte : bytes) {
        record.Write(byte);
    }
    return record.Finish();
}

void ParseNumericSensor(benchmark::State& state) {
    const auto record = NumericSensorRecord();
    __extractedData extracted;
    extracted.supportedTypes[2][0xF1F2F200] = {};
    for (auto _ : state) {
        HandleNumericSensorPDR(record, extracted, 9);
        benchmark::DoNotOptimize(extracted.numericSensors.size());
        extracted.numericSensors.clear();
    }
}
BENCHMARK(ParseNumericSensor);

/** One whole reading: request, response, conversion, comparison. changing: whether it differs each
 *  time, and so is reported. */
void ReadSensor(benchmark::State& state, bool changing) {
    const std::vector<std::uint8_t> answer{0x01, 0x02, 0x11, 0, 5, 0, 0, 1, 1, 1, 0xC7, 0x01, 0, 0};
    PLDMCmds endpoint(3, 9, std::make_unique<InstantTransport>(answer));
    auto sensor = std::make_shared<__Temp_sensors>();
    sensor->sensorID = 5;
    sensor->baseUnit = 2;
    sensor->resolution = 0.1F;
    sensor->sensorNeededFor = 1;
    for (auto _ : state) {
        ReadingMap readings;
        if (changing) {
            sensor->temperature = 0;
        }
        benchmark::DoNotOptimize(endpoint.GetSensorReading(sensor, readings));
    }
}
BENCHMARK_CAPTURE(ReadSensor, unchanged, false);
BENCHMARK_CAPTURE(ReadSensor, changed, true);

} // namespace
} // namespace vantric
