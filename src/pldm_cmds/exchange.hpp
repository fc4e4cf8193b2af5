// SPDX-License-Identifier: Apache-2.0
/** One PLDM message to the endpoint and what came back. */
#pragma once

#include "common/byte_reader.hpp"
#include "common/log.hpp"
#include "common/status.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vantric {

/** One command of the requester, and the words in which the log tells of its failures. */
struct PldmCommand {
    std::uint8_t type = 0;
    std::uint8_t code = 0;
    std::size_t capacity = 0;                 ///< bytes of response that are expected at most
    std::size_t spare = 1;                    ///< bytes by which the buffer is longer than that
    const char* notSent = "";                 ///< begins the line where no response came
    LogLevel refusedLevel = LOG_LEVEL_ERROR;  ///< of the line for another completion code than 0
    const char* refusedWith = "error code ="; ///< stands before that code

    /** The same command where the endpoint's claims decide how long a response may be. */
    constexpr PldmCommand WithCapacity(std::size_t bytes) const {
        PldmCommand command = *this;
        command.capacity = bytes;
        return command;
    }
};

/** A response, header included. Whatever was not received reads as 0. */
class PldmResponse {
public:
    /** An exchange that failed with a status of the transport. */
    explicit PldmResponse(VantricStatus status) : status(status) {}

    /** An exchange that succeeded, with the bytes received. */
    explicit PldmResponse(std::vector<std::uint8_t> received) : bytes(std::move(received)) {}

    /** The transport's VantricStatus value. */
    VantricStatus Status() const { return status; }
    bool Failed() const { return status != STATUS_SUCCESS; }

    std::uint8_t CompletionCode() const { return At<std::uint8_t>(completionCodeOffset); }

    /** The field at an offset from the first byte of the message. */
    template <std::integral T>
    T At(std::size_t offset) const {
        return ByteReader(bytes).At<T>(offset);
    }

    /** Everything received from an offset on; nothing where the response ends before it. */
    std::span<const std::uint8_t> From(std::size_t offset) const {
        return std::span(bytes).subspan(std::min(offset, bytes.size()));
    }

    /** Number of bytes received. */
    std::size_t Size() const { return bytes.size(); }

private:
    static constexpr std::size_t completionCodeOffset = 3;

    VantricStatus status = STATUS_SUCCESS;
    std::vector<std::uint8_t> bytes;
};

} // namespace vantric
