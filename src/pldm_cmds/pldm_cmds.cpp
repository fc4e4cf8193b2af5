// SPDX-License-Identifier: Apache-2.0
#include "pldm_cmds/pldm_cmds.hpp"

#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "mctp_transport/mctp_transport.hpp"
#include "pldm_cmds/exchange.hpp"
#include "pldm_cmds/pldm_codes.hpp"

#include <algorithm>
#include <utility>

namespace vantric {

namespace {

constexpr std::uint8_t requestBit = 0x80;
constexpr std::uint8_t instanceIdCount = 32;

} // namespace

PLDMCmds::PLDMCmds(std::uint8_t slot, std::uint8_t eid)
    : PLDMCmds(slot, eid, std::make_unique<MCTPTransport>(slot, eid)) {}

PLDMCmds::PLDMCmds(std::uint8_t slot, std::uint8_t eid, std::unique_ptr<DeviceTransport> transport)
    : slot(slot), eid(eid), mTransportPtr(std::move(transport)),
      extractedData(std::make_shared<__extractedData>()) {}

void PLDMCmds::ResetEID(std::uint8_t newEid) {
    // The old transport clears what is pending for its EID, so it goes before the new one comes.
    mTransportPtr.reset();
    eid = newEid;
    VANTRIC_LOG(LOG_LEVEL_ERROR, "Updating EID = %d for slot %d\n", newEid, slot);
    mTransportPtr = std::make_unique<MCTPTransport>(slot, newEid);
}

void PLDMCmds::ResetExtractedData() {
    extractedData = std::make_shared<__extractedData>();
}

std::vector<std::uint16_t> PLDMCmds::GetAllSensorIDs() const {
    std::vector<std::uint16_t> ids;
    ids.reserve(extractedData->numericSensors.size());
    for (const auto& sensor : extractedData->numericSensors) {
        ids.push_back(sensor->sensorID);
    }
    return ids;
}

PldmResponse PLDMCmds::Exchange(const PldmCommand& command, const std::vector<std::uint8_t>& data) {
    if (!mTransportPtr) {
        return PldmResponse(STATUS_FAILURE);
    }
    instanceId = static_cast<std::uint8_t>((instanceId + 1) % instanceIdCount);

    ByteWriter message;
    message.Write<std::uint8_t>(requestBit | instanceId).Write(command.type).Write(command.code);
    for (const std::uint8_t byte : data) {
        message.Write(byte);
    }

    TransportPacket packet;
    packet.command = command.code;
    packet.requestBytes = message.Finish();
    packet.responseBytes.resize(command.capacity + command.spare);
    packet.responseLength = static_cast<std::uint32_t>(command.capacity);

    lastStatus = mTransportPtr->SendPacket(packet);
    if (lastStatus != STATUS_SUCCESS) {
        return PldmResponse(lastStatus);
    }
    const std::size_t received = std::min({static_cast<std::size_t>(packet.responseLength),
                                           command.capacity, packet.responseBytes.size()});
    packet.responseBytes.resize(received);
    return PldmResponse(std::move(packet.responseBytes));
}

std::optional<PldmResponse> PLDMCmds::Ask(const PldmCommand& command,
                                          const std::vector<std::uint8_t>& data) {
    auto response = Exchange(command, data);
    if (response.Failed()) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "%s for EID = %d\n", command.notSent, Eid());
        return std::nullopt;
    }
    if (response.CompletionCode() != PLDM_SUCCESS) {
        VANTRIC_LOG(command.refusedLevel, "Failed for EID = %d and %s %d\n", Eid(),
                    command.refusedWith, response.CompletionCode());
        return std::nullopt;
    }
    return response;
}

} // namespace vantric
