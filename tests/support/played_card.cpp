#include "support/played_card.hpp"

#include "pldm_cmds/pdr_builders.hpp"

#include <utility>

namespace vantric::test {

namespace {

constexpr std::uint16_t healthStateSet = 1;
constexpr std::uint8_t completeRecord = 5;

std::uint16_t WordAt(const Bytes& bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes.at(offset) | bytes.at(offset + 1) << 8);
}

void PutWord(Bytes& bytes, std::size_t offset, std::uint16_t value) {
    bytes.at(offset) = static_cast<std::uint8_t>(value);
    bytes.at(offset + 1) = static_cast<std::uint8_t>(value >> 8);
}

} // namespace

Bytes NumericPdr(const PlayedSensor& sensor) {
    Bytes record =
        NumericSensorPdr{.id = sensor.id, .auxNames = 0, .baseUnit = sensor.baseUnit}.Build();
    PutWord(record, 14, sensor.entityType);
    PutWord(record, 16, sensor.entityInstance);
    PutWord(record, 18, sensor.containerId);
    return record;
}

Bytes StatePdr(std::uint16_t id, std::uint16_t entityType) {
    return Pdr(4, Bytes()
                      .Add(std::uint16_t{0xAAAA})
                      .Add(id)
                      .Add(entityType)
                      .Add(std::uint16_t{1})
                      .Add(std::uint16_t{1})
                      .AddZeros(2)
                      .Add(std::uint8_t{1})
                      .Add(healthStateSet)
                      .Add(Bytes{1, 0xFF}));
}

Bytes AssociationPdr(std::uint16_t containerId, std::uint16_t containerType,
                     const std::vector<std::uint16_t>& containedTypes) {
    Bytes body;
    body.Add(containerId)
        .Add(std::uint8_t{0})
        .Add(containerType)
        .Add(std::uint16_t{1})
        .Add(std::uint16_t{0})
        .Add(static_cast<std::uint8_t>(containedTypes.size()));
    for (const auto type : containedTypes) {
        body.Add(type).Add(std::uint16_t{1}).Add(containerId);
    }
    return Pdr(15, body);
}

std::unique_ptr<DeviceTransport> PlayedCard::Connect(std::uint8_t slot, std::uint8_t eid) {
    auto transport = std::make_unique<ScriptedTransport>(slot, eid);
    transport->respond = [this](const Bytes& request) { return Respond(request); };
    return transport;
}

void PlayedCard::Replace(const std::vector<PlayedSensor>& sensors) {
    pdrs.clear();
    for (const auto& sensor : sensors) {
        Add(sensor);
    }
    ++updateSeconds;
}

std::size_t PlayedCard::TakeCount(std::uint16_t command) {
    return std::exchange(counts[command], 0);
}

std::vector<std::uint16_t> PlayedCard::TakeRead() {
    return std::exchange(read, {});
}

::Answer PlayedCard::Respond(const Bytes& request) {
    const std::uint8_t type = request.at(1);
    const std::uint8_t command = request.at(2);
    const auto both = static_cast<std::uint16_t>(type << 8 | command);
    ++asked;
    ++counts[both];
    if (onRequest) {
        onRequest(request);
    }
    if (const auto failing = commandStatus.find(both); failing != commandStatus.end()) {
        return NoAnswer(failing->second);
    }
    switch (type) {
    case 0:
        return RespondBase(command);
    case 2:
        return RespondPlatform(command, request);
    case 4:
        return RespondFru(command);
    case 5:
        return Firmware();
    default:
        return Reply(5);
    }
}

::Answer PlayedCard::RespondBase(std::uint8_t command) const {
    switch (command) {
    case 0x02: // GetTID
        return Good({1});
    case 0x03: // GetPLDMVersion: 1.2.0 of every type, then the checksum
        return Good(Bytes{0, 0, 0, 0, completeRecord}.AddWide(0xF1F2F000, 4).AddZeros(4));
    case 0x04: // GetPLDMTypes: 0, 2 and 5, and 4 if there is FRU data
        return Good(Bytes{static_cast<std::uint8_t>(fruTable ? 0x35 : 0x25)}.AddZeros(7));
    default:
        return Good(Bytes().AddZeros(32));
    }
}

::Answer PlayedCard::RespondPlatform(std::uint8_t command, const Bytes& request) {
    switch (command) {
    case 0x11:
        return Reading(WordAt(request, 3));
    case 0x21:
        return Good({1, 0, state, 0, 0});
    case 0x50:
        return RepositoryInfo();
    case 0x51:
        return Record(WordAt(request, 3));
    default:
        return Good();
    }
}

::Answer PlayedCard::Reading(std::uint16_t sensorId) {
    read.push_back(sensorId);
    if (const auto status = sensorStatus.find(sensorId);
        status != sensorStatus.end() && status->second != 0) {
        return NoAnswer(status->second);
    }
    if (const auto code = sensorCode.find(sensorId);
        code != sensorCode.end() && code->second != 0) {
        return Reply(code->second);
    }
    const auto value = values.find(sensorId);
    const std::uint8_t reading = value != values.end() ? value->second : 25;
    return Good({0, 0, 0, 1, 0, 0, reading});
}

::Answer PlayedCard::RepositoryInfo() const {
    return Good(Bytes{0}
                    .AddZeros(5)
                    .Add(updateSeconds)
                    .AddZeros(20)
                    .Add(static_cast<std::uint32_t>(pdrs.size()))
                    .Add(std::uint32_t{4096})
                    .Add(std::uint32_t{256})
                    .Add(std::uint8_t{0}));
}

/** Handle 0 is the first record's, too. */
::Answer PlayedCard::Record(std::uint32_t handle) const {
    const std::size_t number = handle == 0 ? 1 : handle;
    if (number > pdrs.size()) {
        return Reply(130); // no such record
    }
    const auto& record = pdrs[number - 1];
    const auto next = static_cast<std::uint32_t>(number < pdrs.size() ? number + 1 : 0);
    return Good(Bytes()
                    .Add(next)
                    .Add(std::uint32_t{0})
                    .Add(completeRecord)
                    .Add(static_cast<std::uint16_t>(record.size()))
                    .Add(record));
}

/** The table fits into one part. */
::Answer PlayedCard::RespondFru(std::uint8_t command) const {
    if (!fruTable || command > 2) {
        return Reply(5);
    }
    const auto length = static_cast<std::uint32_t>(fruTable->size());
    return command == 1 ? Good(Bytes().AddZeros(6).Add(length).AddZeros(2).Add(std::uint16_t{1}))
                        : Good(Bytes().AddZeros(4).Add(completeRecord).Add(*fruTable));
}

::Answer PlayedCard::Firmware() const {
    return Good(Bytes()
                    .AddZeros(7)
                    .Add(static_cast<std::uint8_t>(firmware.size()))
                    .AddZeros(2)
                    .Add(std::string_view(firmware)));
}

} // namespace vantric::test
