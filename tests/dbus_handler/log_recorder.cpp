#include "dbus_handler/log_recorder.hpp"

#include <tracelog.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

namespace vantric::test {

namespace {

std::mutex linesMutex;
/// Never destroyed: a detached thread may log until the end.
auto& lines = *new std::vector<std::string>;

/** Takes thread, file and line out of "thread:file:function:line:message\n". */
std::string Shortened(const std::string& line) {
    const auto function = line.find(':', line.find(':') + 1) + 1;
    const auto number = line.find(':', function);
    const auto message = line.find(':', number + 1) + 1;
    return line.substr(function, number - function) + ": " +
           line.substr(message, line.find('\n', message) - message);
}

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
    const std::lock_guard lock(linesMutex);
    lines.push_back(std::to_string(level) + " " + Shortened(text.data()));
}
