// SPDX-License-Identifier: Apache-2.0
/** What is seen of the table. */
#pragma once

#include "card.hpp"
#include "line.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace monitor {

/** How much of the table is seen, and how. */
struct View {
    std::size_t width = 0;  ///< columns; 0 for no limit
    std::size_t height = 0; ///< lines; 0 for no limit, and then there is no line about the keys
    std::size_t scroll = 0; ///< lines of the table above the first one that is seen
    std::string filter;     ///< what the lines that are seen mention, in capitals or not
    bool typing = false;    ///< whether the filter is being typed
    Colour colour = Colour::OFF;
};

/** What the title tells besides the cards. */
struct Heading {
    std::string time;
    bool servicePresent = true;
    unsigned misunderstood = 0; ///< messages
};

/** What is on the screen. */
struct Frame {
    std::vector<std::string> lines; ///< printable ASCII but for the escape sequences of colours
    std::size_t scroll = 0;         ///< the view's, or as far as the table goes
    std::size_t page = 0;           ///< lines of the table that fit
};

/** Draws the title, the table's head and its lines. No line is wider than the view. A card that the
 *  filter finds is seen whole, else those of its lines that it finds, below the card's own. Above
 *  what is seen of a card from its middle on stands the card's line. */
Frame Render(const std::vector<Card>& cards, const Heading& heading, const View& view);

} // namespace monitor
