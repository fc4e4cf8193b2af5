// SPDX-License-Identifier: Apache-2.0
#include "support/captured_log.hpp"

#include <tracelog.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <sstream>
#include <utility>

namespace {

std::mutex linesMutex;
std::vector<LogLine> lines;
bool capturing = false;
std::function<void(const LogLine&)> lineHook;

LogLine TakeApart(int level, int module, const std::string& text) {
    LogLine line{.level = level, .module = module, .function = {}, .message = {}};
    std::istringstream in(text);
    std::string skipped;
    std::getline(in, skipped, ':'); // thread
    std::getline(in, skipped, ':'); // file
    std::getline(in, line.function, ':');
    std::getline(in, skipped, ':'); // line number
    std::getline(in, line.message, '\0');
    return line;
}

} // namespace

extern "C" void tracelog_printf(int level, int module, const char* format, ...) {
    std::array<char, 4096> text{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    std::unique_lock lock(linesMutex);
    if (!capturing) {
        return;
    }
    lines.push_back(TakeApart(level, module, text.data()));
    if (lineHook) {
        const auto hook = lineHook;
        const LogLine line = lines.back();
        lock.unlock();
        hook(line);
    }
}

CapturedLog::CapturedLog() {
    const std::lock_guard lock(linesMutex);
    lines.clear();
    capturing = true;
}

CapturedLog::~CapturedLog() {
    const std::lock_guard lock(linesMutex);
    capturing = false;
    lineHook = {};
}

std::vector<LogLine> CapturedLog::Lines() const {
    const std::lock_guard lock(linesMutex);
    return lines;
}

std::vector<LogLine> CapturedLog::Take() {
    const std::lock_guard lock(linesMutex);
    return std::exchange(lines, {});
}

void CapturedLog::OnLine(std::function<void(const LogLine&)> hook) {
    const std::lock_guard lock(linesMutex);
    lineHook = std::move(hook);
}

std::vector<std::string> CapturedLog::Messages(int level) const {
    std::vector<std::string> messages;
    for (const auto& line : Lines()) {
        if (line.level == level) {
            messages.push_back(line.message);
        }
    }
    return messages;
}

int CapturedLog::Count(int level, const std::string& message) const {
    const auto messages = Messages(level);
    return static_cast<int>(std::ranges::count(messages, message));
}

std::vector<std::string> TakeLog() {
    static CapturedLog log;
    std::vector<std::string> texts;
    for (const auto& line : log.Take()) {
        texts.push_back(std::to_string(line.level) + " " + line.function + ": " +
                        line.message.substr(0, line.message.find('\n')));
    }
    return texts;
}
