// SPDX-License-Identifier: Apache-2.0
/** What a bus owner asks an endpoint: MCTP control messages (DSP0236). */
#pragma once

#include "pdr/record.hpp"

#include <array>
#include <optional>
#include <span>

namespace simulator {

/** What an endpoint tells of itself to its bus owner. */
struct ControlledEndpoint {
    std::uint8_t eid = 0; ///< 0: it has none yet
    std::array<std::uint8_t, 16> uuid{};
};

/** The response to a control message, both without the message type in front. Set Endpoint ID gives
 *  the endpoint another EID. Nothing for what is no request. */
std::optional<Bytes> AnswerControl(std::span<const std::uint8_t> request,
                                   ControlledEndpoint& endpoint);

} // namespace simulator
