// SPDX-License-Identifier: Apache-2.0
/** The log of the libraries on the kernel's MCTP. */
#pragma once

#include <tracelog.h>

#include <string>

namespace board {

/** Levels of tracelog_printf. */
enum LogLevel { LOG_ERROR = 1, LOG_WARNING = 2, LOG_STEP = 4 };

/** Writes one line. Any thread. */
inline void Log(LogLevel level, const std::string& text) {
    constexpr int module = 301;
    tracelog_printf(level, module, "board: %s\n", text.c_str());
}

} // namespace board
