// SPDX-License-Identifier: Apache-2.0
/** A played MCTP client library: the test says what becomes of each request. */
#pragma once

#include <mctplink.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vantric::test {

struct PlayedLink {
    /** Decides over one request: what MctpLinkSendRequest returns, and whether it answers. */
    std::function<int(MctpLinkRequest&)> onSend;
    std::function<void()> onClear = [] {};       ///< what happens inside MctpLinkClearRequest
    std::vector<std::vector<std::uint8_t>> sent; ///< request bytes of every attempt
    std::vector<std::uint8_t> cleared;           ///< EIDs given to MctpLinkClearRequest
};

/** The library's state; a test makes it anew. */
PlayedLink& Link();

/** Completes a request with a response, as the library would, on the calling thread. */
void Complete(MctpLinkRequest& request, const std::vector<std::uint8_t>& response,
              std::uint32_t errorType = 0);

} // namespace vantric::test
