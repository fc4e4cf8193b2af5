#include "options.hpp"

#include <getopt.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

namespace monitor {

namespace {

constexpr int longest = 7 * 24 * 3600;

std::optional<std::chrono::seconds> ParseSeconds(std::string_view text) {
    int seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size() || seconds < 1 ||
        seconds > longest) {
        std::fprintf(stderr, "vantric-monitor: --for takes seconds from 1 to %d\n%s", longest,
                     usage);
        return std::nullopt;
    }
    return std::chrono::seconds(seconds);
}

} // namespace

std::optional<Options> ParseOptions(int argc, char* const* argv) {
    constexpr std::array<option, 4> known{{{"for", required_argument, nullptr, 'f'},
                                           {"once", no_argument, nullptr, 'o'},
                                           {"help", no_argument, nullptr, 'h'},
                                           {nullptr, 0, nullptr, 0}}};
    Options options;
    optind = 0; // from the start, also when called again
    for (int given = 0; (given = getopt_long(argc, argv, "", known.data(), nullptr)) != -1;) {
        switch (given) {
        case 'f':
            options.duration = ParseSeconds(optarg);
            if (!options.duration) {
                return std::nullopt;
            }
            break;
        case 'o':
            options.once = true;
            break;
        case 'h':
            options.help = true;
            break;
        default: // getopt_long has said it
            std::fputs(usage, stderr);
            return std::nullopt;
        }
    }
    if (optind < argc) {
        std::fprintf(stderr, "vantric-monitor: what is \"%s\"?\n%s", argv[optind], usage);
        return std::nullopt;
    }
    return options;
}

} // namespace monitor
