// SPDX-License-Identifier: Apache-2.0
/** The lines of the table: one for a card, then those of its sensors and states. */
#pragma once

#include "card.hpp"
#include "line.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace monitor {

/** A line of the table and the text that it is found by. */
struct Row {
    Line line;
    std::string key;
};

/** Green, or how loud something that isn't well is. */
Style StyleOf(Severity severity);

/** Columns as wide as the cards need, in a width if there is room. */
class Table {
public:
    /** @param width columns; 0 for no limit */
    Table(const std::vector<Card>& cards, std::size_t width);

    Line Head() const;

    /** The card's line, then the others. */
    std::vector<Row> Rows(const Card& card) const;

private:
    Row CardRow(const Card& card) const;
    Row SensorRow(const Sensor& sensor) const;
    Row StateRow(const State& state) const;

    std::size_t nameWidth;
    std::size_t valueEnd;
    std::size_t warningEnd;
    std::size_t criticalEnd;
};

} // namespace monitor
