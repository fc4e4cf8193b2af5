// SPDX-License-Identifier: Apache-2.0
/** A log that formats every line, so that a bad text is found, and writes none. */
#include <tracelog.h>

#include <array>
#include <cstdarg>
#include <cstdio>

extern "C" void tracelog_printf(int, int, const char* format, ...) {
    std::array<char, 512> line{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
}
