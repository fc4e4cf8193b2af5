/** The end of transfers that have none. */
#pragma once

#include "pldm_cmds/limits.hpp"

#include <cstddef>

namespace vantric {

/** Counts what a multipart transfer brings, so that an endpoint can't keep it going for ever. */
class TransferBounds {
public:
    /** @param sizeLimit bytes that one transfer may bring */
    explicit TransferBounds(std::size_t sizeLimit) : sizeLimit(sizeLimit) {}

    /** Counts a part of size bytes. False where the transfer has become too long. */
    bool AllowsPart(std::size_t size) {
        meaningless = 0;
        parts += 1;
        gathered += size;
        return parts <= limits::transferParts && gathered <= sizeLimit;
    }

    /** Counts a response whose transfer flag means nothing. False after too many in a row. */
    bool AllowsMeaninglessFlag() {
        meaningless += 1;
        return meaningless < limits::meaninglessFlags;
    }

    /** The transfer is complete; the next one starts. */
    void Restart() { *this = TransferBounds(sizeLimit); }

private:
    std::size_t sizeLimit;
    std::size_t parts = 0;
    std::size_t gathered = 0;
    std::size_t meaningless = 0;
};

} // namespace vantric
