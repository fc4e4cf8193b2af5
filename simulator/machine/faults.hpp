// SPDX-License-Identifier: Apache-2.0
/** How an endpoint misbehaves. */
#pragma once

#include "pdr/record.hpp"

#include <chrono>

namespace simulator {

/** What is done to the bytes of a response. */
struct Malformation {
    enum class Kind {
        Truncate, /**< only the first number bytes come */
        Extend,   /**< number bytes are appended */
        Flag,     /**< a multipart answer's transfer flag is number */
        Garbage,  /**< what follows the completion code is noise */
        Endless,  /**< a multipart answer, and a walk through the records, has no end */
    };
    Kind kind;
    std::uint32_t number = 0;
};

/** A completion code instead of an answer, to all commands or to one. */
struct Failure {
    std::uint8_t code = 0;
    std::optional<std::uint8_t> type;
    std::optional<std::uint8_t> command;
};

struct Faults {
    bool silent = false;                /**< takes requests and never answers */
    bool refusing = false;              /**< the service doesn't take requests for it */
    std::chrono::milliseconds delay{0}; /**< before each answer */
    std::optional<Failure> failure;
    std::optional<Malformation> malformation;
    std::uint32_t errorType = 0; /**< transport error word of each answer; not on serial lines */
    bool shuffled = false;   /**< on serial lines: the first and the last packet change places */
    std::uint16_t noise = 0; /**< on serial lines: so many bytes before each answer */
};

/** Applies what the faults say to the bytes of a response. request is a PLDM request. */
Bytes Spoil(const Faults& faults, std::span<const std::uint8_t> request, Bytes response);

} // namespace simulator
