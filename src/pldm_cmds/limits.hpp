/** How much one endpoint may make the daemon read and keep.
 *
 * No honest endpoint comes near any of these. They are here because sizes, counts and transfer
 * flags are claims of a card, and a claim may neither take all memory nor hold the device's mutex
 * for ever. */
#pragma once

#include <cstddef>

namespace vantric::limits {

/** Bytes of one PDR, and the part of the claimed largest record size that is believed. */
inline constexpr std::size_t recordSize = 65536;

/** Records of one walk through the repository, and records kept of one kind. */
inline constexpr std::size_t recordCount = 16384;

/** Bytes of all records of one walk. */
inline constexpr std::size_t repositorySize = 2 * 1024 * 1024;

/** Parts of one multipart transfer. */
inline constexpr std::size_t transferParts = 4096;

/** Responses in a row whose transfer flag has no meaning. */
inline constexpr std::size_t meaninglessFlags = 16;

/** Versions of one PLDM type. */
inline constexpr std::size_t versionsOfType = 16;

/** Bytes of one FRU table. */
inline constexpr std::size_t fruTableSize = 256 * 1024;

} // namespace vantric::limits
