// SPDX-License-Identifier: Apache-2.0
#include "line.hpp"

#include "text.hpp"

#include <algorithm>

namespace monitor {

namespace {

constexpr std::size_t gap = 2;

/** Select Graphic Rendition of ECMA-48. */
const char* Code(Style style) {
    switch (style) {
    case Style::PLAIN:
        break;
    case Style::BOLD:
        return "1";
    case Style::DIM:
        return "2";
    case Style::GREEN:
        return "32";
    case Style::YELLOW:
        return "1;33";
    case Style::RED:
        return "1;31";
    }
    return "";
}

} // namespace

Line& Line::Add(std::string_view text, Style style) {
    if (!text.empty()) {
        spans.emplace_back(std::string(column - size, ' '), Style::PLAIN);
        spans.emplace_back(Printable(text), style);
        size = column + spans.back().first.size();
        column = size;
    }
    return *this;
}

Line& Line::TabTo(std::size_t next) {
    column = std::max(column + gap, next);
    return *this;
}

Line& Line::AddUpTo(std::size_t end, std::string_view text, Style style) {
    return TabTo(end - std::min(end, text.size())).Add(text, style);
}

std::string Line::Text(std::size_t width, Colour colour) const {
    const bool cut = width != 0 && size > width;
    std::size_t room = cut ? width - 1 : size;
    std::string line;
    for (const auto& [text, style] : spans) {
        const std::string_view seen = std::string_view(text).substr(0, room);
        room -= seen.size();
        if (colour == Colour::OFF || style == Style::PLAIN || seen.empty()) {
            line += seen;
        } else {
            line.append("\x1b[").append(Code(style)).append("m").append(seen).append("\x1b[m");
        }
    }
    return cut ? line + '~' : line;
}

} // namespace monitor
