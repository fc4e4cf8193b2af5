// SPDX-License-Identifier: Apache-2.0
/** MCTP packets on a serial line (DSP0253). */
#pragma once

#include "pdr/record.hpp"

#include <optional>
#include <span>

namespace simulator {

/** The bytes of a packet on the line: at most 255 bytes of it, escaped, with flags and check sum.
 */
Bytes EncodeSerial(std::span<const std::uint8_t> packet);

/** Puts packets together from the bytes of a line. What is no frame, or has a wrong check sum, is
 *  ignored up to the next flag. */
class SerialDeframer {
public:
    /** Takes the next byte; returns the packet that it completes, if it does. */
    std::optional<Bytes> Feed(std::uint8_t byte);

private:
    std::optional<Bytes> Finish();

    Bytes frame; // without escapes; revision, length, packet, check sum
    bool inside = false;
    bool escaped = false;
};

} // namespace simulator
