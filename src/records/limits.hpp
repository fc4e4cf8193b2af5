// SPDX-License-Identifier: Apache-2.0
/** How much one endpoint may make the daemon read and keep.
 *
 * No honest endpoint comes near any of these. They are here because sizes, counts and transfer
 * flags are claims of a card, and a claim may neither take all memory nor hold the device's mutex
 * for ever. */
#pragma once

#include <cstddef>

namespace vantric::limits {

/** Bytes of one PDR, and the part of the claimed largest record size that is believed: the common
 *  header, the longest body that its 16-bit length can tell of, and a checksum after the parts. */
inline constexpr std::size_t recordSize = 10 + 65535 + 1;

/** Bytes of one FRU table. */
inline constexpr std::size_t fruTableSize = 256UL * 1024;

/** Bytes that one operation may bring: all records of a repository, or all tables of a FRU. */
inline constexpr std::size_t operationSize = 1024UL * 1024;

/** Exchanges of one operation. */
inline constexpr std::size_t operationExchanges = 8192;

/** Responses in a row that bring neither a byte nor the end of a record or table. */
inline constexpr std::size_t idleResponses = 16;

/** Records of one kind that are kept. Some kinds are added to by each read of the repository, and
 *  a numeric sensor is kept once for each version, so the bytes that were read are no bound. */
inline constexpr std::size_t recordsOfKind = 8192;

/** Members of all state sensors together: one takes 3 bytes of its record and many more of ours. */
inline constexpr std::size_t stateMembers = 8192;

/** Nodes of an entity tree, and nodes on the way from its root to the lowest one. */
inline constexpr std::size_t entityNodes = 8192;
inline constexpr std::size_t entityLevels = 128;

/** Versions of one PLDM type, and exchanges of their list: more than the largest response holds. */
inline constexpr std::size_t versionsOfType = 64;

} // namespace vantric::limits
