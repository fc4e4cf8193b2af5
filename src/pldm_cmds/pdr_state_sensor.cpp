// SPDX-License-Identifier: Apache-2.0
/** State Sensor PDR, type 4 (DSP0248). */
#include "common/log.hpp"
#include "pldm_cmds/bounded_list.hpp"
#include "pldm_cmds/pdr_record.hpp"
#include "pldm_cmds/pldm_codes.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "records/limits.hpp"
#include "vocabulary/vocabulary.hpp"

#include <numeric>

namespace vantric {

namespace {

constexpr unsigned bitsInByte = 8;

std::string NameOfStateSet(std::uint16_t stateSetId) {
    const auto name = stateSetNames.find(stateSetId);
    return name == stateSetNames.end() ? "Not Supported" : name->second;
}

/** Bit numbers of the set bits, first byte and lowest bit first. */
std::vector<std::uint8_t> ReadPossibleStates(ByteReader& body, std::uint8_t size) {
    std::vector<std::uint8_t> states;
    unsigned number = 0;
    for (const std::uint8_t byte : body.Take(size)) {
        for (unsigned bit = 0; bit < bitsInByte; ++bit, ++number) {
            if ((byte >> bit & 1) != 0) {
                states.push_back(static_cast<std::uint8_t>(number));
            }
        }
    }
    return states;
}

/** Reads one entry. One without possible states stays empty, its state set id too. */
_CompositeSensorData ReadMember(ByteReader& body, const std::string& defaultName) {
    _CompositeSensorData member;
    const auto stateSetId = body.Read<std::uint16_t>();
    const auto possibleStatesSize = body.Read<std::uint8_t>();
    if (possibleStatesSize == 0) {
        return member;
    }
    member.stateSetID = stateSetId;
    member.possibleStatesSize = possibleStatesSize;
    member.possibleStateValues = ReadPossibleStates(body, possibleStatesSize);
    member.stateSetName = NameOfStateSet(stateSetId);
    member.sensorName = defaultName;
    return member;
}

std::size_t MembersOf(const std::vector<std::shared_ptr<_StateSensors>>& sensors) {
    return std::accumulate(
        sensors.begin(), sensors.end(), std::size_t{0},
        [](std::size_t sum, const auto& sensor) { return sum + sensor->compositeSensors.size(); });
}

} // namespace

void HandleStateSensorPDR(std::span<const std::uint8_t> record, __extractedData& data, int eid) {
    ByteReader body = BodyOf(record);
    auto sensor = std::make_shared<_StateSensors>();
    sensor->PLDMTerminusHandle = body.Read<std::uint16_t>();
    sensor->sensorId = body.Read<std::uint16_t>();
    sensor->entityType = body.Read<std::uint16_t>();
    sensor->entityInstanceNumber = body.Read<std::uint16_t>();
    sensor->containerID = body.Read<std::uint16_t>();
    sensor->sensorInit = body.Read<std::uint8_t>();
    sensor->sensorAuxiliaryNamesPDR = body.Read<std::uint8_t>();
    sensor->compositeSensorCount = body.Read<std::uint8_t>();

    // With a names PDR to come the names stay empty until it does.
    const bool named = sensor->sensorAuxiliaryNamesPDR == 0;
    const std::string prefix = "StateSensor." + std::to_string(sensor->sensorId) + ".";
    sensor->compositeSensors.reserve(sensor->compositeSensorCount);
    for (unsigned position = 1; position <= sensor->compositeSensorCount; ++position) {
        sensor->compositeSensors.push_back(
            ReadMember(body, named ? prefix + std::to_string(position) : std::string()));
    }
    if (!IsWhole(eid, body, PDR_STATE_SENSOR)) {
        return;
    }
    auto& sensors = data.stateSensors;
    if (MembersOf(sensors) + sensor->compositeSensorCount > limits::stateMembers) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "State sensor %d of EID = %d has too many members\n",
                    sensor->sensorId, eid);
        return;
    }
    AppendBounded(sensors, std::move(sensor));
}

} // namespace vantric
