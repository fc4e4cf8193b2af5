// SPDX-License-Identifier: Apache-2.0
#include "mctp_transport/played_link.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace vantric::test {

PlayedLink& Link() {
    static PlayedLink link;
    return link;
}

void Complete(MctpLinkRequest& request, const std::vector<std::uint8_t>& response,
              std::uint32_t errorType) {
    const auto count = std::min<std::size_t>(response.size(), request.responseLength);
    std::copy_n(response.begin(), count, request.responseBytes);
    request.responseLength = static_cast<std::uint32_t>(response.size());
    request.responseErrorType = errorType;
    request.completion(&request);
}

} // namespace vantric::test

int MctpLinkAttach(std::uint32_t, std::uint32_t, MctpLinkCallback, std::uint32_t) {
    return 1;
}

int MctpLinkDetach() {
    return 0;
}

int MctpLinkSendRequest(MctpLinkRequest* request, std::uint32_t flags) {
    EXPECT_EQ(flags, 0U);
    auto& link = vantric::test::Link();
    link.sent.emplace_back(request->requestBytes, request->requestBytes + request->requestLength);
    return link.onSend(*request);
}

int MctpLinkClearRequest(std::uint8_t eid, std::uint32_t flags) {
    EXPECT_EQ(flags, 0U);
    vantric::test::Link().cleared.push_back(eid);
    vantric::test::Link().onClear();
    return 0;
}
