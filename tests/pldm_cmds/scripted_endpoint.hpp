// SPDX-License-Identifier: Apache-2.0
/** An endpoint whose answers a test writes down. */
#pragma once

#include "bytes.hpp"

#include "common/status.hpp"
#include "device_transport/device_transport.hpp"
#include "pldm_cmds/pldm_cmds.hpp"
#include "pldm_cmds/record_parsers.hpp"
#include "pldm_cmds/timestamp104.hpp"

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

/** What comes back for one request. */
struct Answer {
    int status = 0;
    Bytes bytes;
};

/** A response with header and completion code in front of the data. */
inline Answer Reply(std::uint8_t completionCode, const Bytes& data = {}) {
    return {.status = 0, .bytes = Bytes{0x00, 0x00, 0x00, completionCode}.Add(data)};
}

/** A good response. */
inline Answer Good(const Bytes& data = {}) {
    return Reply(0, data);
}

/** A request that the transport couldn't bring to an end. */
inline Answer NoAnswer(int status) {
    return {.status = status, .bytes = {}};
}

/** Plays answers, in order or through a function, and keeps what it was asked. */
class ScriptedTransport : public vantric::DeviceTransport {
public:
    using DeviceTransport::DeviceTransport;

    vantric::VantricStatus SendPacket(vantric::TransportPacket& packet) override {
        requests.emplace_back(Bytes(packet.requestBytes.begin(), packet.requestBytes.end()));
        commands.push_back(packet.command);
        capacities.push_back(packet.responseLength);
        buffers.push_back(packet.responseBytes.size());
        const Answer answer = Next(requests.back());
        packet.responseLength = static_cast<std::uint32_t>(
            std::min<std::size_t>(answer.bytes.size(), packet.responseLength));
        std::ranges::fill(packet.responseBytes, 0xFF); // what isn't of the answer may not be read
        std::copy_n(answer.bytes.begin(), packet.responseLength, packet.responseBytes.begin());
        return static_cast<vantric::VantricStatus>(answer.status);
    }

    std::deque<Answer> answers;
    std::function<Answer(const Bytes& request)> respond; ///< where set, it answers everything
    std::vector<Bytes> requests;
    std::vector<std::uint32_t> commands;
    std::vector<std::uint32_t> capacities;
    std::vector<std::size_t> buffers;

private:
    Answer Next(const Bytes& request) {
        if (respond) {
            return respond(request);
        }
        if (answers.empty()) {
            return NoAnswer(vantric::STATUS_NO_RESPONSE);
        }
        Answer answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }
};

/** A requester with its played endpoint: slot 3, EID 9. */
class ScriptedEndpoint {
public:
    static constexpr std::uint8_t slot = 3;
    static constexpr std::uint8_t eid = 9;

    ScriptedEndpoint& Answers(std::initializer_list<Answer> more) {
        transport.answers.insert(transport.answers.end(), more);
        return *this;
    }

    /** The endpoint is known to speak a type, in one version or none. */
    ScriptedEndpoint& Supports(std::uint8_t type,
                               std::initializer_list<std::uint32_t> versions = {}) {
        auto& known = Data().supportedTypes[type];
        for (const auto version : versions) {
            known.try_emplace(version);
        }
        return *this;
    }

    void HandlePDR(const Bytes& record) { vantric::HandlePDR(record, Data(), eid); }

    vantric::__extractedData& Data() { return cmds.ExtractedData(); }
    std::size_t Asked() const { return transport.requests.size(); }

private:
    std::unique_ptr<ScriptedTransport> owned = std::make_unique<ScriptedTransport>(slot, eid);

public:
    ScriptedTransport& transport = *owned;
    vantric::PLDMCmds cmds{slot, eid, std::move(owned)};
};
