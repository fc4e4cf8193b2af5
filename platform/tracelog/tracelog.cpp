// SPDX-License-Identifier: Apache-2.0
#include "tracelog.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

/** Failures and conditions that may pass; the trace is for whoever asks for it. */
constexpr int defaultLevel = 2;

/** No longer than what a pipe takes whole, so that lines of several threads and processes don't
 *  run into each other. */
constexpr std::size_t maxLine = PIPE_BUF;

constexpr std::string_view cutMark = "...";

/** The highest level that is shown: TRACELOG_LEVEL, where it is a number. */
int ShownLevel() {
    const char* text = std::getenv("TRACELOG_LEVEL");
    if (text == nullptr || *text == '\0') {
        return defaultLevel;
    }
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text, &end, 10);
    const bool usable = *end == '\0' && errno == 0 && value >= 0 && value <= INT_MAX;
    return usable ? static_cast<int>(value) : defaultLevel;
}

/** The priority that the journal reads at the head of a line. */
std::string_view JournalPriority(int level) {
    if (level <= 1) {
        return "<3>";
    }
    if (level == 2) {
        return "<4>";
    }
    return level <= 4 ? "<6>" : "<7>";
}

/** One line of the log under construction, always with room for the cut mark and the line end. */
class Line {
public:
    void Append(std::string_view text) {
        for (const char byte : text) {
            bytes[length++] = byte;
        }
    }

    /** Appends one byte of a message: text from a card must neither end the line nor speak to a
     *  terminal. Returns false when the line is full. */
    bool AppendMessageByte(unsigned char byte) {
        constexpr std::size_t escapeLength = 4;
        if (length + escapeLength + cutMark.size() + 1 > bytes.size()) {
            return false;
        }
        if (byte >= 0x20 && byte < 0x7f) {
            bytes[length++] = static_cast<char>(byte);
            return true;
        }
        constexpr std::string_view digits = "0123456789abcdef";
        Append("\\x");
        bytes[length++] = digits[byte >> 4U];
        bytes[length++] = digits[byte & 0x0fU];
        return true;
    }

    /** Hands the line to the kernel at once. A log without a reader must not stop its writer, so a
     *  failure ends the attempt. */
    void Write() const {
        std::size_t done = 0;
        while (done < length) {
            const ssize_t taken = write(STDERR_FILENO, bytes.data() + done, length - done);
            if (taken < 0 && errno == EINTR) {
                continue;
            }
            if (taken <= 0) {
                return;
            }
            done += static_cast<std::size_t>(taken);
        }
    }

private:
    std::array<char, maxLine> bytes{};
    std::size_t length = 0;
};

void WriteLine(int level, std::string_view message, bool cut) {
    Line line;
    line.Append(JournalPriority(level));
    for (const char byte : message) {
        if (!line.AppendMessageByte(static_cast<unsigned char>(byte))) {
            cut = true;
            break;
        }
    }
    if (cut) {
        line.Append(cutMark);
    }
    line.Append("\n");
    line.Write();
}

} // namespace

void tracelog_printf(int level, int /*module*/, const char* format, ...) {
    static const int shownLevel = ShownLevel();
    if (level > shownLevel || format == nullptr) {
        return;
    }
    const int callersErrno = errno;
    std::array<char, maxLine> text{};
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);

    // A message that can't be formatted still says which one it is.
    std::string_view message = wanted < 0 ? format : text.data();
    while (message.ends_with('\n')) {
        message.remove_suffix(1);
    }
    WriteLine(level, message, wanted >= static_cast<int>(text.size()));
    errno = callersErrno;
}
