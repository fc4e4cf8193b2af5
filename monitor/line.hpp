// SPDX-License-Identifier: Apache-2.0
/** A line of text in several styles. */
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace monitor {

enum class Style { PLAIN, BOLD, DIM, GREEN, YELLOW, RED };

enum class Colour { OFF, ON };

/** Text that is put together from left to right. What is added becomes printable ASCII. */
class Line {
public:
    Line& Add(std::string_view text, Style style = Style::PLAIN);

    /** What is added next stands at a column, two spaces on at least. */
    Line& TabTo(std::size_t next);

    /** Adds a text that ends before a column, or starts two spaces on where that is too narrow. */
    Line& AddUpTo(std::size_t end, std::string_view text, Style style = Style::PLAIN);

    /** The line, cut to a width with a "~" at its end; 0 means no limit. */
    std::string Text(std::size_t width, Colour colour) const;

private:
    std::vector<std::pair<std::string, Style>> spans;
    std::size_t size = 0;   ///< of the spans
    std::size_t column = 0; ///< where the next text stands
};

} // namespace monitor
