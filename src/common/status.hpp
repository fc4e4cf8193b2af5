// SPDX-License-Identifier: Apache-2.0
/** Outcome of a PLDM exchange, from the transport up to the monitor loop. */
#pragma once

#include <cstdint>

namespace vantric {

/** Returned by every step of an exchange, and printed as its number. Inside the sensor polls it is
 *  also thrown and caught. */
enum VantricStatus : std::int32_t {
    STATUS_SUCCESS = 0,
    STATUS_FAILURE = 1,             ///< the operation failed
    STATUS_NO_RESPONSE = 3,         ///< none of the attempts was answered
    STATUS_NOT_DELIVERED = 4,       ///< host off, refused by the library, or a transport error
    STATUS_NOT_SUPPORTED = 5,       ///< the endpoint lacks the PLDM type or command
    STATUS_DISCOVERY_RUNNING = 8,   ///< refused while an MCTP discovery runs
    STATUS_NEW_END_POINTS = 9,      ///< timed out while the endpoint table is being replaced
    STATUS_INVALID_OR_CHANGED = 10, ///< invalid sensor, or the PDR repository has changed
    STATUS_COMMAND_FAILED = 11,     ///< the device couldn't carry the command out
    STATUS_DEVICE_NOT_READY = 12,   ///< the device asks for patience
};

} // namespace vantric
