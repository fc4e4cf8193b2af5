/** Lays rows out as a table of text. */
#pragma once

#include "row_builder.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace monitor {

/** The table's lines, the heading first, none wider than width columns; 0 means no limit. Where the
 *  room is short the widest columns give way, and "~" stands for what is cut from a cell: its
 *  middle, but not the first number. Cells are made printable. */
std::vector<std::string> RenderTable(const std::vector<Row>& rows, std::size_t width);

} // namespace monitor
