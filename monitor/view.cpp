// SPDX-License-Identifier: Apache-2.0
#include "view.hpp"

#include "table.hpp"
#include "text.hpp"

#include <algorithm>
#include <functional>
#include <map>

namespace monitor {

namespace {

constexpr std::size_t linesAround = 3; // title, head and keys

/** The lines that the filter leaves, and for each the line of its card. */
struct Body {
    std::vector<Line> lines;
    std::vector<std::size_t> cards;
    std::size_t total = 0; ///< lines without the filter
};

Body Filtered(const std::vector<Card>& cards, const Table& table, const std::string& filter) {
    const std::string wanted = LowerCase(filter);
    const auto found = [&](const Row& row) {
        return LowerCase(row.key).find(wanted) != std::string::npos;
    };
    Body body;
    for (const Card& card : cards) {
        std::vector<Row> rows = table.Rows(card);
        body.total += rows.size();
        if (!found(rows.front())) {
            rows.erase(std::remove_if(rows.begin() + 1, rows.end(), std::not_fn(found)),
                       rows.end());
            if (rows.size() == 1) {
                continue;
            }
        }
        const std::size_t first = body.lines.size();
        for (Row& row : rows) {
            body.lines.push_back(std::move(row.line));
            body.cards.push_back(first);
        }
    }
    return body;
}

void AddCounts(Line& title, const std::vector<Card>& cards) {
    std::map<Severity, std::size_t, std::greater<>> counts;
    for (const Card& card : cards) {
        ++counts[card.Worst()];
    }
    for (const auto& [severity, count] : counts) {
        if (severity != Severity::OK) {
            title.Add(", ").Add(std::to_string(count) + ' ' + Word(severity), StyleOf(severity));
        }
    }
}

/** Tells how many lines aren't seen, and where they are. */
void AddHidden(Line& title, std::size_t above, std::size_t below, std::size_t filtered) {
    const std::size_t all = above + below + filtered;
    if (all == 0) {
        return;
    }
    title.Add("; " + std::to_string(all) + (all == 1 ? " line" : " lines") + " hidden");
    const char* separator = " (";
    for (const auto& [count, where] :
         {std::pair(above, " above"), {below, " below"}, {filtered, " filtered"}}) {
        if (count != 0) {
            title.Add(separator + std::to_string(count) + where);
            separator = ", ";
        }
    }
    title.Add(")");
}

Line Title(const std::vector<Card>& cards, const Heading& heading) {
    Line title;
    title.Add("vantricd ", Style::BOLD).Add(heading.time, Style::BOLD).Add("  ");
    if (!heading.servicePresent) {
        return title.Add("isn't on the bus", Style::RED);
    }
    title.Add(std::to_string(cards.size()) + (cards.size() == 1 ? " card" : " cards"));
    AddCounts(title, cards);
    if (heading.misunderstood > 0) {
        title.Add(", " + std::to_string(heading.misunderstood) + " not understood", Style::RED);
    }
    return title;
}

Line Keys(const View& view) {
    Line line;
    if (view.typing) {
        return line.Add("/" + view.filter + "_", Style::BOLD);
    }
    if (!view.filter.empty()) {
        line.Add("/" + view.filter, Style::BOLD).Add("  Esc: all  ", Style::DIM);
    }
    return line.Add("q: quit  /: filter  arrows, PgUp, PgDn, Home, End: scroll", Style::DIM);
}

} // namespace

Frame Render(const std::vector<Card>& cards, const Heading& heading, const View& view) {
    const Table table(cards, view.width);
    const Body body = Filtered(cards, table, view.filter);
    const std::size_t count = body.lines.size();
    Frame frame;
    frame.page = view.height == 0 ? count : std::max(view.height, linesAround + 1) - linesAround;
    const std::size_t seen = std::min(frame.page, count);
    frame.scroll = std::min(view.scroll, count - seen);

    Line title = Title(cards, heading);
    AddHidden(title, frame.scroll, count - frame.scroll - seen, body.total - count);
    const auto add = [&](const Line& line) {
        frame.lines.push_back(line.Text(view.width, view.colour));
    };
    add(title);
    add(table.Head());
    for (std::size_t line = frame.scroll; line < frame.scroll + seen; ++line) {
        add(body.lines[line == frame.scroll ? body.cards[line] : line]);
    }
    if (view.height != 0) {
        frame.lines.resize(std::max(view.height, std::size_t{1}) - 1);
        add(Keys(view));
    }
    return frame;
}

} // namespace monitor
