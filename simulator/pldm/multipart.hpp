// SPDX-License-Identifier: Apache-2.0
/** Long answers in parts. */
#pragma once

#include "pdr/record.hpp"

namespace simulator {

/** One part of a long answer. */
struct Part {
    std::span<const std::uint8_t> data;
    std::uint32_t nextHandle = 0; /**< 0 after the last part */
    std::uint8_t flag = 0;
    bool last = false;
};

/** Transfer operations of a request. */
constexpr std::uint8_t getNextPart = 0;
constexpr std::uint8_t getFirstPart = 1;

/** The transfer flag of an answer in one part. */
constexpr std::uint8_t wholeAnswer = 5;

/** Cuts the part that a request asks for. A handle is the offset of its part. Empty if the handle
 *  is none that an earlier part gave. limit holds besides the described size, 0 for none. */
std::optional<Part> CutPart(std::span<const std::uint8_t> whole, std::uint32_t handle,
                            std::uint8_t operation, const Multipart& parts, std::size_t limit);

} // namespace simulator
