/** Turns the published objects into the rows of the table. */
#pragma once

#include "object_model.hpp"

#include <string>
#include <vector>

namespace monitor {

/** One line of the table, in the words of its reader. */
struct Row {
    std::string card;   ///< for people; with its LDID where two cards bear the same name
    std::string object; ///< what the value is about
    std::string value;  ///< "n/a" where there is none
    std::string unit;
    std::string status; ///< whether the value can be trusted
    std::string health;
    std::string order; ///< what sorts the rows of one card

    bool operator==(const Row&) const = default;
};

/** The rows of all objects, by card and then by id, numbers in the order of their value. */
std::vector<Row> BuildRows(const ObjectModel& model);

} // namespace monitor
