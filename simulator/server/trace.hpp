// SPDX-License-Identifier: Apache-2.0
/** A file of what was asked and answered, for whoever measures. */
#pragma once

#include <cstdint>
#include <fstream>
#include <span>
#include <string>

namespace simulator {

/** One line for each response: the time in nanoseconds of the monotonic clock just before it went
 *  out, the endpoint's EID, the request and the response in hexadecimal. The file is complete when
 *  the trace ends. */
class Trace {
public:
    /** Begins the file anew. Throws std::runtime_error if it can't be written. */
    explicit Trace(const std::string& path);

    /** A line without its time. */
    static std::string Line(std::uint8_t eid, std::span<const std::uint8_t> request,
                            std::span<const std::uint8_t> response);

    /** Writes a line with the time of now. */
    void Write(const std::string& line);

private:
    std::ofstream file;
};

} // namespace simulator
