/** One PLDM message to the endpoint and what came back. */
#pragma once

#include "common/byte_reader.hpp"
#include "common/status.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vantric {

/** A request without its header. */
struct PldmRequest {
    std::uint8_t type = 0;
    std::uint8_t command = 0;
    std::vector<std::uint8_t> data;
    std::size_t capacity = 0; ///< bytes of response that are expected at most
    std::size_t spare = 1;    ///< bytes by which the buffer is longer than that
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
