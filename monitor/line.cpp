#include "line.hpp"

#include "text.hpp"

#include <algorithm>

namespace monitor {

namespace {

constexpr std::size_t gap = 2;

/// Select Graphic Rendition of ECMA-48.
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
    spans.emplace_back(Printable(text), style);
    size += spans.back().first.size();
    return *this;
}

Line& Line::TabTo(std::size_t column) {
    return Add(std::string(std::max(size + gap, column) - size, ' '));
}

Line& Line::AddUpTo(std::size_t column, std::string_view text, Style style) {
    return TabTo(column - std::min(column, text.size())).Add(text, style);
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
