// SPDX-License-Identifier: Apache-2.0
/** vantric-monitor: shows in the terminal what vantricd publishes. */
#include "options.hpp"
#include "program.hpp"

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        const monitor::Options options = monitor::ParseOptions(argc, argv);
        if (options.output == monitor::Output::HELP) {
            std::fputs(monitor::usage, stdout);
        } else if (options.output == monitor::Output::VERSION) {
            std::puts("vantric-monitor " VANTRIC_VERSION);
        } else {
            monitor::Program(options).Run();
        }
        return 0;
    } catch (const monitor::UsageError& error) {
        std::fprintf(stderr, "vantric-monitor: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantric-monitor: %s\n", error.what());
        return 1;
    }
}
