// SPDX-License-Identifier: Apache-2.0
#include "mctp_transport/mctp_transport.hpp"

#include "common/log.hpp"
#include "common/pause.hpp"
#include "common/process_flags.hpp"
#include "common/status.hpp"

#include <algorithm>
#include <chrono>
#include <memory>

namespace vantric {

namespace {

constexpr int attemptLimit = 10;
constexpr std::chrono::seconds attemptTimeout{5};

/** The function that the library calls, on a thread of its own. */
void OnCompletion(MctpLinkRequest* request) {
    if (request == nullptr || request->context == nullptr) {
        return;
    }
    static_cast<MCTPTransport*>(request->context)->MCTPRespCB(request);
}

} // namespace

MCTPTransport::~MCTPTransport() {
    MctpLinkClearRequest(eid, 0);
}

VantricStatus MCTPTransport::SendPacket(TransportPacket& packet) {
    auto record = std::make_unique<MctpLinkRequest>();
    const auto command = static_cast<std::uint8_t>(packet.command & 0xFF);
    Packet("CMD", slot, command, packet.requestBytes.data(),
           static_cast<int>(packet.requestBytes.size()));
    record->command = packet.command;
    record->eid = eid;
    record->messageType = messageType;
    record->requestFlagA = packet.requestFlagA;
    record->requestFlagB = packet.requestFlagB;
    record->requestBytes = packet.requestBytes.data();
    record->requestLength = static_cast<std::uint32_t>(packet.requestBytes.size());
    record->responseBytes = packet.responseBytes.data();
    record->completion = OnCompletion;
    record->context = this;

    for (int attempt = 1; attempt <= attemptLimit; ++attempt) {
        if (hostPowerState == HOST_POWER_OFF) {
            return STATUS_NOT_DELIVERED;
        }
        {
            // An answer to an earlier attempt must not count for this one, and one that comes
            // before the wait begins must: so the flag is cleared before the request goes out.
            const std::scoped_lock lock(responseMutex);
            responded = false;
            record->responseLength = packet.responseLength;
        }
        if (MctpLinkSendRequest(record.get(), 0) != 0) {
            if (mctpDiscoveryRunning) {
                return STATUS_DISCOVERY_RUNNING;
            }
            VANTRIC_LOG(LOG_LEVEL_WARNING, "Error sending packet through MCTP for EID = %d\n", eid);
            return STATUS_NOT_DELIVERED;
        }
        const Attempt outcome = WaitForResponse(packet, *record);
        if (outcome == Attempt::ANSWERED) {
            return STATUS_SUCCESS;
        }
        // Not under responseMutex: the library may wait here for a completion that is just running
        // and wants that mutex.
        MctpLinkClearRequest(eid, 0);
        if (outcome == Attempt::FAILED || hostPowerState == HOST_POWER_OFF) {
            return STATUS_NOT_DELIVERED;
        }
        VANTRIC_LOG(LOG_LEVEL_WARNING, "MCTP Timeout::For CMD = %x and EID = %d\n", packet.command,
                    eid);
        if (useNewEndPoints) {
            VANTRIC_LOG(LOG_LEVEL_TRACE, "Use new end points\n");
            return STATUS_NEW_END_POINTS;
        }
    }
    return STATUS_NO_RESPONSE;
}

MCTPTransport::Attempt MCTPTransport::WaitForResponse(TransportPacket& packet,
                                                      const MctpLinkRequest& record) {
    std::unique_lock lock(responseMutex);
    if (!WaitFor(responseCond, lock, attemptTimeout, [this] { return responded; })) {
        return Attempt::TIMED_OUT;
    }
    if (record.responseErrorType != 0) {
        return Attempt::FAILED;
    }
    TakeResponse(packet, record);
    return Attempt::ANSWERED;
}

void MCTPTransport::TakeResponse(TransportPacket& packet, const MctpLinkRequest& record) const {
    packet.responseLength =
        std::min(record.responseLength, static_cast<std::uint32_t>(packet.responseBytes.size()));
    Packet("RSP", slot, static_cast<std::uint8_t>(packet.command & 0xFF),
           packet.responseBytes.data(), static_cast<int>(packet.responseLength));
}

void MCTPTransport::MCTPRespCB(const MctpLinkRequest* request) {
    if (request->eid != eid) {
        return;
    }
    VANTRIC_LOG(LOG_LEVEL_TRACE, "MCTP:RSP:EPID[%d]:RSPS[%d]:RSPF[%d]:RSPEType[%d]\n", request->eid,
                static_cast<int>(request->responseStatus), static_cast<int>(request->responseFlags),
                static_cast<int>(request->responseErrorType));
    {
        const std::scoped_lock lock(responseMutex);
        responded = true;
    }
    // Not under responseMutex: the sender would wake only to wait for it. The condition still
    // stands: the destructor's MctpLinkClearRequest lets this call end first.
    responseCond.notify_one();
}

} // namespace vantric
