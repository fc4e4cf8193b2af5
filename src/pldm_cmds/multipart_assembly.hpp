// SPDX-License-Identifier: Apache-2.0
/** Records and tables that come in parts. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vantric {

/** Puts the parts of multipart responses together, object after object, for one operation.
 *
 * Knows when an operation has brought more than any honest endpoint would, so that the caller can
 * give up: see limits.hpp. */
class MultipartAssembly {
public:
    enum class Step {
        COMPLETE,     ///< the object is whole: Finish() has it
        MORE_TO_COME, ///< the next part is to be asked for
        NO_MEANING,   ///< the transfer flag says nothing; nothing was taken
        TOO_LONG,     ///< the operation must end; Finish() has what was gathered until now
    };

    /** @param objectLimit bytes that one object may have */
    explicit MultipartAssembly(std::size_t objectLimit) : objectLimit(objectLimit) {}

    /** Takes one response: its transfer flag and the bytes that it brought. */
    Step Take(std::uint8_t transferFlag, std::span<const std::uint8_t> part);

    /** True if a part of the current object has come. */
    bool HasBytes() const { return !object.empty(); }

    /** Gives the object away and starts the next one. */
    std::vector<std::uint8_t> Finish();

private:
    /** False where the object or the operation would be longer than is believed. */
    bool Append(std::span<const std::uint8_t> part);

    std::size_t objectLimit;
    std::vector<std::uint8_t> object;
    std::size_t exchanges = 0;
    std::size_t total = 0;
    std::size_t idle = 0; ///< responses in a row that brought no byte and no end
};

} // namespace vantric
