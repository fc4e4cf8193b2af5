#include "pldm_cmds/pldm_cmds.hpp"

#include "common/byte_writer.hpp"
#include "common/log.hpp"
#include "mctp_transport/mctp_transport.hpp"
#include "pldm_cmds/exchange.hpp"

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

PldmResponse PLDMCmds::Exchange(const PldmRequest& request) {
    if (!mTransportPtr) {
        return PldmResponse(STATUS_FAILURE);
    }
    instanceId = static_cast<std::uint8_t>((instanceId + 1) % instanceIdCount);

    ByteWriter message;
    message.Write<std::uint8_t>(requestBit | instanceId).Write(request.type).Write(request.command);
    for (const std::uint8_t byte : request.data) {
        message.Write(byte);
    }

    TransportPacket packet;
    packet.command = request.command;
    packet.requestBytes = message.Finish();
    packet.responseBytes.resize(request.capacity + request.spare);
    packet.responseLength = static_cast<std::uint32_t>(request.capacity);

    lastStatus = mTransportPtr->SendPacket(packet);
    if (lastStatus != STATUS_SUCCESS) {
        return PldmResponse(lastStatus);
    }
    const std::size_t received = std::min({static_cast<std::size_t>(packet.responseLength),
                                           request.capacity, packet.responseBytes.size()});
    packet.responseBytes.resize(received);
    return PldmResponse(std::move(packet.responseBytes));
}

} // namespace vantric
