// SPDX-License-Identifier: Apache-2.0
/** The endpoint table of the kernel's MCTP. */
#pragma once

#include "board.hpp"
#include "mctpd.hpp"
#include "mctplink.h"

#include <map>
#include <vector>

namespace mctplink {

/** The entries of a table and the network in which each of their EIDs is. */
struct EndpointTable {
    std::vector<MctpLinkEndPoint> entries;
    std::map<std::uint8_t, std::uint32_t> networks;
    std::vector<std::string> remarks; ///< what somebody who writes a board file wants to know
};

/** Joins what mctpd and the board file tell, in the board file's order. An endpoint that the file
 *  doesn't know stands last, in no kind of slot. An EID that several networks have stands for the
 *  first of these endpoints: a request has no room for a network. */
EndpointTable MakeTable(const std::vector<Endpoint>& endpoints, const board::Board& board);

/** The record that the callback receives and frees; null if there is no memory. */
MctpLinkCallbackInfo* MakeDelivery(const std::vector<MctpLinkEndPoint>& entries);

} // namespace mctplink
