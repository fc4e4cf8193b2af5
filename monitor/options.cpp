// SPDX-License-Identifier: Apache-2.0
#include "options.hpp"

#include <getopt.h>

#include <array>
#include <charconv>
#include <string_view>

namespace monitor {

namespace {

constexpr int longest = 7 * 24 * 3600;
constexpr const char* hint = "; vantric-monitor --help tells the options";

std::chrono::seconds ParseSeconds(std::string_view text) {
    int seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size() || seconds < 1 ||
        seconds > longest) {
        throw UsageError("--for takes seconds from 1 to " + std::to_string(longest));
    }
    return std::chrono::seconds(seconds);
}

/** The option that getopt_long doesn't know, which may stand among other short ones. */
std::string Refused(char* const* argv) {
    const std::string last = argv[optind - 1];
    return last.starts_with("-") ? last : std::string{'-', static_cast<char>(optopt)};
}

} // namespace

Options ParseOptions(int argc, char* const* argv) {
    constexpr std::array<option, 7> known{{{"card", required_argument, nullptr, 'c'},
                                           {"for", required_argument, nullptr, 'f'},
                                           {"once", no_argument, nullptr, 'o'},
                                           {"json", no_argument, nullptr, 'j'},
                                           {"help", no_argument, nullptr, 'h'},
                                           {"version", no_argument, nullptr, 'v'},
                                           {nullptr, 0, nullptr, 0}}};
    Options options;
    opterr = 0;
    optind = 0; // starts anew, whatever has been read before
    for (int given = 0; (given = getopt_long(argc, argv, ":h", known.data(), nullptr)) != -1;) {
        switch (given) {
        case 'c':
            options.card = optarg;
            break;
        case 'f':
            options.duration = ParseSeconds(optarg);
            break;
        case 'o':
            options.output = Output::TABLE;
            break;
        case 'j':
            options.output = Output::JSON;
            break;
        case 'h':
            options.output = Output::HELP;
            return options;
        case 'v':
            options.output = Output::VERSION;
            return options;
        case ':':
            throw UsageError(std::string(argv[optind - 1]) + " needs a value" + hint);
        default:
            throw UsageError("unknown option " + Refused(argv) + hint);
        }
    }
    if (optind < argc) {
        throw UsageError(std::string("unknown argument ") + argv[optind] + hint);
    }
    if (options.duration && options.output != Output::LIVE) {
        throw UsageError("--for doesn't go with --once or --json; leave one of them out");
    }
    return options;
}

} // namespace monitor
