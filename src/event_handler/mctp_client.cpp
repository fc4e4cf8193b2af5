// SPDX-License-Identifier: Apache-2.0
#include "event_handler/mctp_client.hpp"

#include "common/log.hpp"
#include "common/process_flags.hpp"
#include "event_handler/event_handler.hpp"

#include <cstdlib>
#include <memory>

namespace vantric {

namespace {

constexpr std::uint32_t linkType = 3;
constexpr std::uint32_t allEvents = 0xFFFFFFFF;
constexpr std::uint32_t sourceOfGoodTable = 1;

struct Free {
    void operator()(MctpLinkCallbackInfo* info) const { std::free(info); }
};

void OnDiscoveryStarted() {
    if (mctpDiscoveryState == MCTP_TABLE_DELIVERED ||
        mctpDiscoveryState == MCTP_DISCOVERY_STARTED) {
        mctpDiscoveryState = MCTP_DISCOVERY_STARTED;
        mctpDiscoveryRunning = true;
    }
}

void OnTableDelivered(MctpLinkCallbackInfo* callbackInfo) {
    const std::unique_ptr<MctpLinkCallbackInfo, Free> owned(callbackInfo);
    const MctpLinkEndPointResp& table = callbackInfo->table;
    if (callbackInfo->tableAttached == 0 || table.entryCount == 0) {
        return;
    }
    if (table.discoveryState != MCTP_TABLE_DELIVERED ||
        (table.source != sourceOfGoodTable && table.acceptable == 0)) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Invalid discovery state %d\n",
                    static_cast<int>(table.discoveryState));
        return;
    }
    mctpDiscoveryRunning = false;
    mctpDiscoveryState = MCTP_TABLE_DELIVERED;
    NotifyObservers(END_POINT_TABLE_UPDATED, &table);
}

} // namespace

void MctpClientCallBack(MctpLinkCallbackInfo* callbackInfo) {
    if (callbackInfo == nullptr) {
        VANTRIC_LOG(LOG_LEVEL_WARNING, "Invalid callbackInfo\n");
        return;
    }
    if (callbackInfo->callbackType == MCTPLINK_DISCOVERY_STARTED) {
        OnDiscoveryStarted();
    } else if (callbackInfo->callbackType == MCTPLINK_TABLE_DELIVERED) {
        OnTableDelivered(callbackInfo);
    }
}

MctpClient::MctpClient() {
    MctpLinkAttachWrapper();
}

MctpClient::~MctpClient() {
    MctpLinkDetach();
}

void MctpClient::MctpLinkAttachWrapper() {
    if (MctpLinkAttach(linkType, allEvents, MctpClientCallBack, 0) != 0) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Failed to attach to MCTP\n");
    }
}

} // namespace vantric
