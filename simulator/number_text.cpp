// SPDX-License-Identifier: Apache-2.0
#include "number_text.hpp"

#include <charconv>
#include <cmath>

namespace simulator {

std::optional<std::int64_t> ParseInteger(std::string_view text) {
    const bool negative = text.starts_with('-');
    auto digits = text.substr(negative ? 1 : 0);
    int base = 10;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
        base = 16;
    }
    std::int64_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    // A second sign is what from_chars would take.
    if (error != std::errc() || end != digits.data() + digits.size() || digits.starts_with('-')) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

std::optional<double> ParseReal(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace simulator
