// SPDX-License-Identifier: Apache-2.0
#include "simulator_session.hpp"

#include "payload.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace mctplink {

namespace {

using simulator_link::Frame;
using simulator_link::FrameKind;
using simulator_link::PayloadReader;
using simulator_link::PayloadWriter;

void CallWithDiscovery(MctpLinkCallback callback) {
    MctpLinkCallbackInfo info{};
    info.callbackType = MCTPLINK_DISCOVERY_STARTED;
    callback(&info);
}

/** payload: u32 attached flag, the table. The callback frees the record. */
void CallWithTable(MctpLinkCallback callback, const std::vector<std::uint8_t>& payload) {
    PayloadReader reader(payload);
    const auto attached = reader.Read<std::uint32_t>();
    const auto table = reader.Rest();
    constexpr std::size_t headSize = offsetof(MctpLinkCallbackInfo, table);
    const std::size_t size = std::max(sizeof(MctpLinkCallbackInfo), headSize + table.size());
    auto* const bytes = static_cast<std::uint8_t*>(std::calloc(1, size));
    if (bytes == nullptr) {
        return;
    }
    std::copy(table.begin(), table.end(), bytes + headSize);
    auto* const info = reinterpret_cast<MctpLinkCallbackInfo*>(bytes);
    info->callbackType = MCTPLINK_TABLE_DELIVERED;
    info->tableAttached = attached;
    // Whoever reads the table goes by its count, so it must not promise more than there is.
    const std::size_t entriesAt = headSize + sizeof(MctpLinkEndPointResp);
    const std::size_t entries =
        size > entriesAt ? (size - entriesAt) / sizeof(MctpLinkEndPoint) : 0;
    info->table.entryCount =
        static_cast<std::uint32_t>(std::min<std::size_t>(info->table.entryCount, entries));
    callback(info);
}

void CompleteWith(PendingRequests& pending, const Frame& response) {
    PayloadReader reader(response.payload);
    Outcome outcome;
    outcome.status = reader.Read<std::uint32_t>();
    outcome.flags = reader.Read<std::uint32_t>();
    outcome.errorType = reader.Read<std::uint32_t>();
    outcome.response = reader.Rest();
    pending.Complete(response.tag, outcome);
}

} // namespace

SimulatorSession::SimulatorSession(MctpLinkCallback callback)
    : callback(callback), pending(std::make_shared<PendingRequests>()),
      link(
          "mctplink", [this](const Frame& frame) { Receive(frame); },
          [this] { return std::vector<Frame>{attach}; }) {}

SimulatorSession::~SimulatorSession() {
    End();
}

void SimulatorSession::End() {
    link.Stop();
    callbacks.Stop();
    completions.Stop();
}

bool SimulatorSession::Start(std::uint32_t linkType, std::uint32_t filter) {
    attach.kind = FrameKind::Attach;
    attach.payload = PayloadWriter().Write(linkType).Write(filter).Finish();
    return link.Start() && link.Ask(attach).has_value();
}

bool SimulatorSession::Send(MctpLinkRequest& record) {
    if (record.requestBytes == nullptr) {
        return false;
    }
    Frame frame;
    frame.kind = FrameKind::Request;
    frame.tag = link.NewTag();
    frame.payload = PayloadWriter()
                        .Write(record.eid)
                        .Write(record.messageType)
                        .Write(std::span(record.requestBytes, record.requestLength))
                        .Finish();
    const auto tag = frame.tag;
    // The response may come before the reply has woken this thread.
    pending->Add(tag, record);
    if (link.Ask(std::move(frame))) {
        return true;
    }
    pending->Withdraw(tag);
    return false;
}

void SimulatorSession::Receive(const Frame& frame) {
    switch (frame.kind) {
    case FrameKind::Response:
        completions.Post([shared = pending, frame] { CompleteWith(*shared, frame); });
        break;
    case FrameKind::Discovery:
        callbacks.Post([call = callback] { CallWithDiscovery(call); });
        break;
    case FrameKind::Table:
        callbacks.Post(
            [call = callback, payload = frame.payload] { CallWithTable(call, payload); });
        break;
    default:
        break;
    }
}

std::shared_ptr<Session> MakeSession(MctpLinkCallback callback) {
    return std::make_shared<SimulatorSession>(callback);
}

} // namespace mctplink
