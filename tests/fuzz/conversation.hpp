// SPDX-License-Identifier: Apache-2.0
/** All that a device asks of an endpoint, and what is thrown at it. */
#pragma once

#include "pldm_cmds/scripted_endpoint.hpp"

#include <cstdint>
#include <span>

/** An inventory and two monitor cycles, whatever the endpoint answers. */
void TalkTo(ScriptedEndpoint& endpoint);

/** Talks to an endpoint that answers with the input's messages, each a u16 length and as many
 * bytes, or what is left of them. A fault, or a name that isn't UTF-8, ends the process. */
void TalkToInput(std::span<const std::uint8_t> input);
