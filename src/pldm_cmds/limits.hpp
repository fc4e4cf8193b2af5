/** How much one endpoint may make the daemon read and keep.
 *
 * No honest endpoint comes near any of these. They are here because sizes, counts and transfer
 * flags are claims of a card, and a claim may neither take all memory nor hold the device's mutex
 * for ever. */
#pragma once

#include <cstddef>

namespace vantric::limits {

/** Bytes of one PDR, and the part of the claimed largest record size that is believed. */
inline constexpr std::size_t recordSize = 64UL * 1024;

/** Bytes of one FRU table. */
inline constexpr std::size_t fruTableSize = 256UL * 1024;

/** Bytes that one operation may bring: all records of a repository, or all tables of a FRU. */
inline constexpr std::size_t operationSize = 1024UL * 1024;

/** Exchanges of one operation. */
inline constexpr std::size_t operationExchanges = 32768;

/** Responses in a row whose transfer flag has no meaning. */
inline constexpr std::size_t meaninglessFlags = 16;

/** Records of one kind that are kept where a re-read of the repository adds to them. */
inline constexpr std::size_t recordsOfKind = 16384;

/** Versions of one PLDM type. */
inline constexpr std::size_t versionsOfType = 16;

} // namespace vantric::limits
