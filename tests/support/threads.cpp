// SPDX-License-Identifier: Apache-2.0
#include "support/threads.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace vantric::test {

namespace {

constexpr auto threads = "/proc/self/task/";

/** The first line of a file; empty if the thread has ended meanwhile. */
std::string FirstLine(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace

bool Sleeps(pid_t thread) {
    const std::string stat = FirstLine(threads + std::to_string(thread) + "/stat");
    const auto name = stat.rfind(')');
    return name != std::string::npos && stat.substr(name).starts_with(") S");
}

std::vector<std::string> ThreadNames(const std::string& begin) {
    std::vector<std::string> names;
    for (const auto& thread : std::filesystem::directory_iterator(threads)) {
        const std::string name = FirstLine(thread.path() / "comm");
        if (name.starts_with(begin)) {
            names.push_back(name);
        }
    }
    std::ranges::sort(names);
    return names;
}

} // namespace vantric::test
