// SPDX-License-Identifier: Apache-2.0
/** One exchange with one endpoint, whatever carries it. */
#pragma once

#include "common/status.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace vantric {

/** One request and its response. Made by the command layer on its stack for one SendPacket. */
struct TransportPacket {
    std::uint32_t command = 0;               ///< PLDM command code
    std::uint8_t requestFlagA = 0;           ///< passed to the transport as it stands
    std::uint8_t requestFlagB = 0;           ///< passed to the transport as it stands
    std::vector<std::uint8_t> requestBytes;  ///< the whole PLDM message, header included
    std::vector<std::uint8_t> responseBytes; ///< buffer, sized by the caller
    /** In: bytes that the caller expects. Out: bytes received, never more than responseBytes holds.
     */
    std::uint32_t responseLength = 0;
};

/** Carries requests to one endpoint of one device. Belongs to the device's monitor thread. */
class DeviceTransport {
public:
    /** @param slot the device's slot number, for the log
     *  @param eid the destination, fixed for the transport's life */
    DeviceTransport(std::uint8_t slot, std::uint8_t eid);
    virtual ~DeviceTransport() = default;
    DeviceTransport(const DeviceTransport&) = delete;
    DeviceTransport& operator=(const DeviceTransport&) = delete;

    /** Sends the request and blocks until its response is there or given up. Called with the
     *  device's mutex held. Returns a VantricStatus value, 0 when the response was received. */
    virtual VantricStatus SendPacket(TransportPacket& packet) = 0;

    /** Writes length bytes in hexadecimal to the log, 16 in a line. Nothing for length 0 or less.
     */
    void Packet(const std::string& label, std::uint8_t slot, std::uint8_t command,
                const std::uint8_t* data, int length) const;

protected:
    std::uint8_t slot;
    std::uint8_t eid;
    std::uint8_t messageType = 1; ///< MCTP message type of PLDM (DSP0239)
};

} // namespace vantric
