// SPDX-License-Identifier: Apache-2.0
/** The board file, docs/board.md. */
#pragma once

#include "board.hpp"

#include <string>
#include <vector>

namespace board {

/** A board and what is wrong with its file, a line for each mistake. */
struct BoardFile {
    Board board;
    std::vector<std::string> mistakes;
};

/** The file's path: VANTRIC_BOARD, or /etc/vantric/board.json where that isn't set. */
std::string BoardFilePath();

/** Reads a board file. A mistake costs the entry that has it; a file that can't be read or isn't
 *  JSON gives an empty board. Each mistake begins with the path. Any thread. */
BoardFile ReadBoardFile(const std::string& path);

} // namespace board
