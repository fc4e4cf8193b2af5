// SPDX-License-Identifier: Apache-2.0
/** The command line. */
#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>

namespace monitor {

enum class Output { LIVE, TABLE, JSON, HELP, VERSION };

/** What the user asked for. */
struct Options {
    Output output = Output::LIVE;
    std::optional<std::chrono::seconds> duration; ///< end by itself after this time
    std::string card;                             ///< show the cards that are called so; or all
};

/** The command line is wrong; the text says what to do. */
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline constexpr const char* usage =
    "Shows the PCIe cards that vantricd publishes on the system bus.\n"
    "\n"
    "usage: vantric-monitor [--card NAME] [--for SECONDS | --once | --json]\n"
    "\n"
    "  --card NAME    only cards whose name or LDID has NAME in it, such as \"slot 3\"\n"
    "  --for SECONDS  end after this time\n"
    "  --once         print the table once\n"
    "  --json         print the cards once, as JSON\n"
    "  -h, --help     print this\n"
    "  --version      print the version\n"
    "\n"
    "Keys: arrows, PgUp, PgDn, Home and End scroll, / filters, Esc shows all again, q quits.\n"
    "Colours need a terminal; NO_COLOR=1 turns them off.\n"
    "Exit status: 0; 1 if there is no bus, service or such card; 2 for a wrong command line.\n";

/** Reads the command line.
 *  @throws UsageError if it can't be followed */
Options ParseOptions(int argc, char* const* argv);

} // namespace monitor
