// SPDX-License-Identifier: Apache-2.0
/** Changes a running simulator. */

#include "control/command.hpp"
#include "control/control.hpp"

#include <cstdio>
#include <string>
#include <vector>

namespace {

bool WantsHelp(const std::vector<std::string>& words) {
    const std::string word = words.empty() ? "--help" : words.front();
    return word == "--help" || word == "-h" || word == "help";
}

void PrintHelp() {
    std::printf("usage: simctl COMMAND [WORD...]\n"
                "Changes the simulator that listens at SIMULATOR_SOCKET, and says what it did.\n"
                "%s\n",
                simulator::ListOfCommands().c_str());
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (WantsHelp(words)) {
        PrintHelp();
        return 0;
    }
    if (words.front() == "--version") {
        std::puts("simctl " VANTRIC_VERSION);
        return 0;
    }
    const auto outcome = simulator::Command(words);
    if (!outcome.good) {
        std::fprintf(stderr, "simctl: %s\n", outcome.text.c_str());
        return 1;
    }
    std::printf("%s\n", outcome.text.c_str());
    return 0;
}
