// SPDX-License-Identifier: Apache-2.0
#include "serial/mctp_control.hpp"

namespace simulator {

namespace {

enum Command : std::uint8_t {
    SET_ENDPOINT_ID = 0x01,
    GET_ENDPOINT_ID = 0x02,
    GET_ENDPOINT_UUID = 0x03,
    GET_VERSION_SUPPORT = 0x04,
    GET_MESSAGE_TYPE_SUPPORT = 0x05,
};

enum CompletionCode : std::uint8_t {
    CONTROL_SUCCESS = 0x00,
    CONTROL_INVALID_DATA = 0x02,
    CONTROL_INVALID_LENGTH = 0x03,
    CONTROL_UNSUPPORTED_COMMAND = 0x05,
    CONTROL_TYPE_NOT_SUPPORTED = 0x80,
};

constexpr std::uint8_t requestBit = 0x80;
constexpr std::uint8_t datagramBit = 0x40;
constexpr std::uint8_t instanceBits = 0x1F;
constexpr std::uint8_t pldmType = 1;
constexpr std::uint8_t controlType = 0;
constexpr std::uint8_t baseType = 0xFF; // of MCTP itself
constexpr std::uint8_t firstEid = 8;    // those below are reserved
constexpr std::uint8_t broadcastEid = 0xFF;

Bytes SetEndpointId(std::span<const std::uint8_t> data, ControlledEndpoint& endpoint) {
    constexpr std::uint8_t force = 1; // and 0 is plain set; others concern static EIDs
    if (data.size() < 2) {
        return {CONTROL_INVALID_LENGTH};
    }
    if (data[0] > force || data[1] < firstEid || data[1] == broadcastEid) {
        return {CONTROL_INVALID_DATA};
    }
    endpoint.eid = data[1];
    constexpr std::uint8_t acceptedNoPool = 0;
    return {CONTROL_SUCCESS, acceptedNoPool, endpoint.eid, 0};
}

Bytes GetVersionSupport(std::span<const std::uint8_t> data) {
    if (data.empty()) {
        return {CONTROL_INVALID_LENGTH};
    }
    switch (data[0]) {
    case baseType:
    case controlType:
        return {CONTROL_SUCCESS, 1, 0xF1, 0xF3, 0xF1, 0x00}; // 1.3.1
    case pldmType:
        return {CONTROL_SUCCESS, 1, 0xF1, 0xF0, 0xF0, 0x00}; // 1.0.0
    default:
        return {CONTROL_TYPE_NOT_SUPPORTED};
    }
}

Bytes Answer(std::uint8_t command, std::span<const std::uint8_t> data,
             ControlledEndpoint& endpoint) {
    switch (command) {
    case SET_ENDPOINT_ID:
        return SetEndpointId(data, endpoint);
    case GET_ENDPOINT_ID:
        return {CONTROL_SUCCESS, endpoint.eid, 0, 0}; // a simple endpoint with a dynamic EID
    case GET_ENDPOINT_UUID: {
        Bytes answer{CONTROL_SUCCESS};
        answer.insert(answer.end(), endpoint.uuid.begin(), endpoint.uuid.end());
        return answer;
    }
    case GET_VERSION_SUPPORT:
        return GetVersionSupport(data);
    case GET_MESSAGE_TYPE_SUPPORT:
        return {CONTROL_SUCCESS, 1, pldmType};
    default:
        return {CONTROL_UNSUPPORTED_COMMAND};
    }
}

} // namespace

std::optional<Bytes> AnswerControl(std::span<const std::uint8_t> request,
                                   ControlledEndpoint& endpoint) {
    constexpr std::size_t headerSize = 2;
    if (request.size() < headerSize || (request[0] & requestBit) == 0 ||
        (request[0] & datagramBit) != 0) {
        return std::nullopt;
    }
    Bytes response{static_cast<std::uint8_t>(request[0] & instanceBits), request[1]};
    const auto answer = Answer(request[1], request.subspan(headerSize), endpoint);
    response.insert(response.end(), answer.begin(), answer.end());
    return response;
}

} // namespace simulator
