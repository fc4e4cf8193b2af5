// SPDX-License-Identifier: Apache-2.0
#include "pldm/checksum.hpp"
#include "pldm/command.hpp"
#include "pldm/multipart.hpp"

namespace simulator {

namespace {

using simulator_link::PayloadReader;

// Completion codes of the platform commands (DSP0248).
constexpr std::uint8_t invalidSensorId = 0x80;
constexpr std::uint8_t invalidOperationalState = 0x81;
constexpr std::uint8_t invalidTransferHandle = 0x80;
constexpr std::uint8_t invalidTransferOperation = 0x81;
constexpr std::uint8_t invalidRecordHandle = 0x82;
constexpr std::uint8_t invalidChangeNumber = 0x83;

constexpr std::uint8_t lastSettableState = 2;

Bytes SetNumericSensorEnable(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto sensor = terminus.numericSensors.find(data.Read<std::uint16_t>());
    const auto state = data.Read<std::uint8_t>();
    if (sensor == terminus.numericSensors.end()) {
        return Only(invalidSensorId);
    }
    if (state > lastSettableState) {
        return Only(invalidOperationalState);
    }
    sensor->second.Enable(state);
    return Only(CompletionCode::Success);
}

Bytes GetSensorReading(Terminus& terminus, PayloadReader& data, Seconds now) {
    const auto sensor = terminus.numericSensors.find(data.Read<std::uint16_t>());
    if (sensor == terminus.numericSensors.end()) {
        return Only(invalidSensorId);
    }
    const auto reading = sensor->second.Read(now);
    return Success().Write(std::span<const std::uint8_t>(reading)).Finish();
}

Bytes GetStateSensorReadings(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto sensor = terminus.stateSensors.find(data.Read<std::uint16_t>());
    if (sensor == terminus.stateSensors.end()) {
        return Only(invalidSensorId);
    }
    const auto reading = sensor->second.Read();
    return Success().Write(std::span<const std::uint8_t>(reading)).Finish();
}

Bytes GetRepositoryInfo(Terminus& terminus, PayloadReader&, Seconds) {
    const auto& repository = terminus.repository;
    const auto& traits = terminus.description.repository;
    const auto count = static_cast<std::uint32_t>(repository.Count());
    const auto largest = static_cast<std::uint32_t>(repository.Largest());
    constexpr std::size_t timestampSize = 13;
    constexpr std::uint8_t noHandleTimeout = 0;
    return Success()
        .Write(traits.state)
        .Write(std::span<const std::uint8_t>(repository.UpdateTime()))
        .WriteUnsigned(0, timestampSize) // no OEM records
        .Write(traits.recordCount.value_or(count))
        .Write(static_cast<std::uint32_t>(repository.Size()))
        .Write(traits.largestRecord.value_or(largest))
        .Write(noHandleTimeout)
        .Finish();
}

/** The record change number in a record's common header. */
std::uint16_t ChangeNumber(std::span<const std::uint8_t> record) {
    PayloadReader reader(record);
    reader.Take(6);
    return reader.Read<std::uint16_t>();
}

Bytes GetPdr(Terminus& terminus, PayloadReader& data, Seconds) {
    const auto recordHandle = data.Read<std::uint32_t>();
    const auto transferHandle = data.Read<std::uint32_t>();
    const auto operation = data.Read<std::uint8_t>();
    const auto requestCount = data.Read<std::uint16_t>();
    const auto changeNumber = data.Read<std::uint16_t>();
    const Bytes* const record = terminus.repository.Find(recordHandle);
    if (record == nullptr) {
        return Only(invalidRecordHandle);
    }
    if (operation > getFirstPart) {
        return Only(invalidTransferOperation);
    }
    if (changeNumber != (operation == getFirstPart ? 0 : ChangeNumber(*record))) {
        return Only(invalidChangeNumber);
    }
    const auto part =
        CutPart(*record, transferHandle, operation, terminus.description.pdrParts, requestCount);
    if (!part) {
        return Only(invalidTransferHandle);
    }
    auto answer = Success();
    answer.Write(terminus.repository.Next(recordHandle))
        .Write(part->nextHandle)
        .Write(part->flag)
        .Write(static_cast<std::uint16_t>(part->data.size()))
        .Write(part->data);
    if (part->last && part->flag != wholeAnswer) {
        answer.Write(Crc8(*record));
    }
    return answer.Finish();
}

} // namespace

std::span<const Command> PlatformCommands() {
    static constexpr Command commands[] = {
        {0x10, 4, SetNumericSensorEnable},
        {0x11, 3, GetSensorReading},
        {0x21, 4, GetStateSensorReadings},
        {0x50, 0, GetRepositoryInfo},
        {0x51, 13, GetPdr},
    };
    return commands;
}

} // namespace simulator
