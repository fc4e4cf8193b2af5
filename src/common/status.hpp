/** Outcome of a PLDM exchange, from the transport up to the monitor loop. */
#pragma once

#include <cstdint>

namespace vantric {

/** Travels as an int; inside the sensor polls also thrown and caught. */
enum class VantricStatus : std::int32_t {
    SUCCESS = 0,
    FAILURE = 1,             ///< the operation failed
    NO_RESPONSE = 3,         ///< none of the attempts was answered
    NOT_DELIVERED = 4,       ///< host off, refused by the library, or a transport error
    NOT_SUPPORTED = 5,       ///< the endpoint lacks the PLDM type or command
    DISCOVERY_RUNNING = 8,   ///< refused while an MCTP discovery runs
    NEW_END_POINTS = 9,      ///< timed out while the endpoint table is being replaced
    INVALID_OR_CHANGED = 10, ///< invalid sensor, or the PDR repository has changed
    COMMAND_FAILED = 11,     ///< the device couldn't carry the command out
    DEVICE_NOT_READY = 12,   ///< the device asks for patience
};

/** The value as it travels. */
constexpr int ToInt(VantricStatus status) {
    return static_cast<int>(status);
}

} // namespace vantric
