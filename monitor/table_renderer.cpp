#include "table_renderer.hpp"

#include "text.hpp"

#include <algorithm>
#include <array>
#include <numeric>

namespace monitor {

namespace {

constexpr std::size_t columnCount = 6;
constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 4;
constexpr std::size_t valueColumn = 2; // numbers stand to the right

using Cells = std::array<std::string, columnCount>;
using Widths = std::array<std::size_t, columnCount>;

Cells CellsOf(const Row& row) {
    return {Printable(row.card), Printable(row.object), Printable(row.value),
            Printable(row.unit), Printable(row.status), Printable(row.health)};
}

Widths FitWidths(const std::vector<Cells>& lines, std::size_t width) {
    Widths widths{};
    for (const Cells& cells : lines) {
        for (std::size_t column = 0; column < columnCount; ++column) {
            widths[column] = std::max(widths[column], cells[column].size());
        }
    }
    const std::size_t gaps = gap * (columnCount - 1);
    while (width != 0 && std::accumulate(widths.begin(), widths.end(), gaps) > width) {
        const auto widest = std::ranges::max_element(widths);
        if (*widest <= narrowest) {
            break;
        }
        --*widest;
    }
    return widths;
}

constexpr std::string_view digits = "0123456789";

/// The text without its middle; the first number stays, since names of a kind differ in it.
std::string Cut(const std::string& text, std::size_t width) {
    const std::size_t number = std::min(text.find_first_of(digits), text.size());
    const std::size_t behind = std::min(text.find_first_not_of(digits, number), text.size());
    const std::size_t length = behind - number;
    std::size_t front = width / 2;
    if (behind * 3 <= width * 2) {
        front = std::max(front, behind);
    }
    std::size_t end = width - 1 - front;
    if (number < front || number >= text.size() - end || length + 4 > width) {
        return text.substr(0, front) + '~' + text.substr(text.size() - end);
    }
    front = (width - 2 - length) / 2;
    end = width - 2 - length - front;
    if (behind + end >= text.size()) {
        const std::string rest = text.substr(number);
        return text.substr(0, width - 1 - rest.size()) + '~' + rest;
    }
    return text.substr(0, front) + '~' + text.substr(number, length) + '~' +
           text.substr(text.size() - end);
}

std::string Fit(const std::string& cell, std::size_t width, bool toTheRight) {
    if (cell.size() > width) {
        return Cut(cell, width);
    }
    const std::string padding(width - cell.size(), ' ');
    return toTheRight ? padding + cell : cell + padding;
}

std::string RenderLine(const Cells& cells, const Widths& widths, std::size_t width) {
    std::string line;
    for (std::size_t column = 0; column < columnCount; ++column) {
        line += Fit(cells[column], widths[column], column == valueColumn);
        line.append(gap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    if (width != 0 && line.size() > width) {
        line.resize(width);
    }
    return line;
}

} // namespace

std::vector<std::string> RenderTable(const std::vector<Row>& rows, std::size_t width) {
    std::vector<Cells> lines{{"CARD", "OBJECT", "VALUE", "UNIT", "STATUS", "HEALTH"}};
    lines.reserve(rows.size() + 1);
    std::ranges::transform(rows, std::back_inserter(lines), CellsOf);
    const Widths widths = FitWidths(lines, width);
    std::vector<std::string> table;
    table.reserve(lines.size());
    for (const Cells& cells : lines) {
        table.push_back(RenderLine(cells, widths, width));
    }
    return table;
}

} // namespace monitor
