// SPDX-License-Identifier: Apache-2.0
#include "support/played_card.hpp"

#include <algorithm>

namespace vantric::test {

namespace {

constexpr std::uint8_t fruType = 4;

const simulator::TypeSupport anyType{.versions = {0xF1F2F000}, .commands = {}};

class CardTransport : public DeviceTransport {
public:
    CardTransport(std::uint8_t slot, std::uint8_t eid, PlayedCard& card)
        : DeviceTransport(slot, eid), card(card) {}

    VantricStatus SendPacket(TransportPacket& packet) override {
        const auto [status, response] = card.Exchange(packet.requestBytes);
        packet.responseLength =
            std::min(packet.responseLength, static_cast<std::uint32_t>(response.size()));
        std::copy_n(response.begin(), packet.responseLength, packet.responseBytes.begin());
        return static_cast<VantricStatus>(status);
    }

private:
    PlayedCard& card;
};

template <typename Value>
Value Find(const std::map<std::uint16_t, Value>& map, std::uint16_t key, Value otherwise = {}) {
    const auto found = map.find(key);
    return found != map.end() ? found->second : otherwise;
}

} // namespace

PlayedCard::PlayedCard() : terminus({}) {
    terminus.description.types = {{0, anyType}, {2, anyType}, {5, anyType}};
}

std::unique_ptr<DeviceTransport> PlayedCard::Connect(std::uint8_t slot, std::uint8_t eid) {
    return std::make_unique<CardTransport>(slot, eid, *this);
}

void PlayedCard::Add(const PlayedSensor& sensor) {
    simulator::NumericSensor described;
    described.id = sensor.id;
    described.entity = {sensor.entityType, sensor.entityInstance, 1};
    described.unit = sensor.baseUnit;
    described.init = sensor.init;
    described.thresholds = {80, 90, 100, 10, 8, 6};
    terminus.description.numericSensors.push_back(described);
    Describe();
}

void PlayedCard::AddState(std::uint16_t id, std::uint16_t entityType) {
    auto& sensor = terminus.description.stateSensors.emplace_back();
    sensor.id = id;
    sensor.entity = {entityType, 1, 1};
    sensor.members.emplace_back().possibleStates = {1, 2, 3};
    Describe();
}

void PlayedCard::AddEntities(std::uint16_t containerType, const std::vector<std::uint16_t>& types) {
    auto& association = terminus.description.entities.associations.emplace_back();
    association.containerId = 1;
    association.container = {containerType, 1, 0};
    for (const auto type : types) {
        association.contained.push_back({type, 1, 1});
    }
    Describe();
}

void PlayedCard::Replace(const std::vector<PlayedSensor>& sensors) {
    terminus.description.numericSensors.clear();
    terminus.description.stateSensors.clear();
    terminus.description.entities = {};
    for (const auto& sensor : sensors) {
        Add(sensor);
    }
}

void PlayedCard::Describe() {
    terminus.StartSensors();
    terminus.RebuildRepository();
}

std::pair<int, PlayedCard::Bytes> PlayedCard::Exchange(std::span<const std::uint8_t> request) {
    const auto command = static_cast<std::uint16_t>(request[1] << 8 | request[2]);
    ++asked;
    ++counts[command];
    if (onRequest) {
        onRequest(request);
    }
    int status = Find(commandStatus, command);
    std::uint8_t code = 0;
    if (command == PLAYED_GET_SENSOR_READING) {
        const auto id = static_cast<std::uint16_t>(request[3] | request[4] << 8);
        read.push_back(id);
        status = Find(sensorStatus, id, status);
        code = Find(sensorCode, id);
        terminus.numericSensors.at(id).Value().Fix(Find(values, id, 25.0));
    }
    if (status != 0) {
        return {status, {}};
    }
    auto& described = terminus.description;
    described.firmware.active.assign(firmware.begin(), firmware.end());
    described.types.erase(fruType);
    if (fruTable) {
        described.types[fruType] = anyType;
        described.fru = {.records = {}, .rawTable = fruTable};
        terminus.fruTable = *fruTable;
    }
    auto response = simulator::Respond(terminus, request, simulator::Seconds(0)).value();
    if (code != 0) {
        response.resize(4);
        response[3] = code;
    }
    return {0, response};
}

} // namespace vantric::test
