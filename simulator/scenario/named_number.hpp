// SPDX-License-Identifier: Apache-2.0
/** Words that stand for numbers. */
#pragma once

#include <cstdint>
#include <string_view>

namespace simulator {

/** A word that stands for a number. */
struct NamedNumber {
    std::string_view name;
    std::uint32_t number;
};

} // namespace simulator
