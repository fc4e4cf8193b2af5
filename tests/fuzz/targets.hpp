// SPDX-License-Identifier: Apache-2.0
/** What inputs are thrown at, by name, and how seeds are written for it. */
#pragma once

#include "pldm_cmds/scripted_endpoint.hpp"

#include <cstdint>
#include <map>
#include <span>
#include <string>

/** Takes one input; a fault ends the process. */
using FuzzTarget = void (*)(std::span<const std::uint8_t> input);

/** "fru", "names", "pdr" and "responses". */
extern const std::map<std::string, FuzzTarget> fuzzTargets;

/** An inventory and two monitor cycles, whatever the endpoint answers. */
void TalkTo(ScriptedEndpoint& endpoint);

/** One of several messages in an input: a u16 length and as many bytes. */
inline Bytes AsChunk(const Bytes& bytes) {
    return Bytes().Add(static_cast<std::uint16_t>(bytes.size())).Add(bytes);
}
