#include "dbus_handler/log_recorder.hpp"

#include <tracelog.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <regex>
#include <utility>

namespace vantric::test {

namespace {

std::mutex linesMutex;
std::vector<std::string> lines;

} // namespace

std::vector<std::string> TakeLog() {
    const std::lock_guard lock(linesMutex);
    return std::exchange(lines, {});
}

} // namespace vantric::test

void tracelog_printf(int level, int /*module*/, const char* format, ...) {
    using namespace vantric::test;
    std::array<char, 1024> text{};
    va_list values;
    va_start(values, format);
    std::vsnprintf(text.data(), text.size(), format, values);
    va_end(values);
    // thread:file:function:line:message. Never destroyed: a detached thread may log until the end.
    static const auto& head = *new std::regex("^[^:]*:[^:]*:([^:]*):\\d+:([^\n]*)\n?$");
    const std::lock_guard lock(linesMutex);
    lines.push_back(std::to_string(level) + " " + std::regex_replace(text.data(), head, "$1: $2"));
}
