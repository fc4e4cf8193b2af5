// SPDX-License-Identifier: Apache-2.0
/** GetStateSensorReadings: the state poll (DSP0248). */
#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/pldm_codes.hpp"

namespace vantric {

namespace {

constexpr PldmCommand getReadings{.type = PLDM_PLATFORM,
                                  .code = CMD_GET_STATE_SENSOR_READINGS,
                                  .capacity = 46,
                                  .notSent = "Send failed"};
constexpr std::uint8_t noRearm = 0;
constexpr std::uint8_t reserved = 0;
constexpr std::size_t membersOffset = 5;
constexpr std::size_t memberSize = 4;

/** Members that a response has room for. */
constexpr std::size_t maxMembers = (getReadings.capacity - membersOffset) / memberSize;

/** The two states of a member that are looked at. */
struct MemberState {
    std::uint8_t operational;
    std::uint8_t present;

    bool operator==(const MemberState&) const = default;
};

MemberState Stored(const _CompositeSensorData& member) {
    return {member.sensorOperationalState, member.presentState};
}

/** State of member i. One that no response has room for stays what it is: there is nothing to read
 *  of it, and a made-up 0 would be reported as a change. */
MemberState ReadMember(const PldmResponse& response, std::size_t i,
                       const _CompositeSensorData& member) {
    if (i >= maxMembers) {
        return Stored(member);
    }
    const std::size_t offset = membersOffset + memberSize * i;
    return {response.At<std::uint8_t>(offset), response.At<std::uint8_t>(offset + 1)};
}

/** All members with their stored states. */
StateChange Describe(const _StateSensors& sensor) {
    StateChange change;
    for (const auto& member : sensor.compositeSensors) {
        change.presentStates.push_back(member.presentState);
        change.stateSetIds.push_back(member.stateSetID);
        change.memberNames.push_back(member.sensorName);
    }
    return change;
}

/** Forgets what the members were; every failure is reported anew. */
void ForgetStates(_StateSensors& sensor) {
    for (auto& member : sensor.compositeSensors) {
        member.stateSetID = 0;
        member.presentState = 0;
    }
}

} // namespace

VantricStatus PLDMCmds::GetStateSensorReading(StateChangeMap& changes) {
    VantricStatus result = STATUS_SUCCESS;
    for (const auto& sensor : extractedData->stateSensors) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "StateSensorID = %d\n", sensor->sensorId);
        const auto response =
            Exchange(getReadings,
                     ByteWriter().Write(sensor->sensorId).Write(noRearm).Write(reserved).Finish());
        VantricStatus status = response.Status();
        if (response.Failed()) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Send failed for EID = %d and status = %d\n", Eid(),
                        status);
        } else if (response.CompletionCode() != PLDM_SUCCESS) {
            VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed for EID = %d and error code = %d\n", Eid(),
                        response.CompletionCode());
            status = STATUS_FAILURE;
        }
        if (status != STATUS_SUCCESS) {
            result = status;
            ForgetStates(*sensor);
            if (!sensor->compositeSensors.empty()) {
                changes[sensor->sensorId] = Describe(*sensor);
            }
            continue;
        }

        bool changed = false;
        for (std::size_t i = 0; i < sensor->compositeSensors.size(); ++i) {
            auto& member = sensor->compositeSensors[i];
            const MemberState state = ReadMember(response, i, member);
            if (state == Stored(member)) {
                continue;
            }
            member.sensorOperationalState = state.operational;
            member.presentState = state.present;
            changed = true;
            VANTRIC_LOG(LOG_LEVEL_TRACE,
                        "Slot[%d]::StateSensorID[%d]::StateSetID[%d]::PresentState[%d]\n", slot,
                        sensor->sensorId, member.stateSetID, member.presentState);
        }
        if (changed) {
            changes[sensor->sensorId] = Describe(*sensor);
        }
    }
    return result;
}

} // namespace vantric
