/** The command line. */
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace monitor {

/** What the user asked for. */
struct Options {
    std::optional<std::chrono::seconds> duration; ///< stop by itself after this time
    bool once = false;                            ///< one table, then stop
    bool help = false;
};

inline constexpr const char* usage = "usage: vantric-monitor [--for SECONDS] [--once]\n";

/** Reads the command line, or returns nothing and says on standard error what is wrong with it. */
std::optional<Options> ParseOptions(int argc, char* const* argv);

} // namespace monitor
