// SPDX-License-Identifier: Apache-2.0
#include "terminal.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace monitor {

namespace {

// Of xterm: the second screen, and whether the cursor is seen.
constexpr const char* takeScreen = "\x1b[?1049h\x1b[?25l";
constexpr const char* giveScreen = "\x1b[?25h\x1b[?1049l";

constexpr winsize usualSize{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};

/** The settings of a terminal that can be read from. */
std::optional<termios> Settings(int fd) {
    termios settings{};
    const bool readable = (fcntl(fd, F_GETFL) & O_ACCMODE) == O_RDWR;
    return readable && tcgetattr(fd, &settings) == 0 ? std::optional(settings) : std::nullopt;
}

} // namespace

bool Write(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool IsTerminal(int fd) {
    const char* type = std::getenv("TERM");
    return isatty(fd) == 1 && type != nullptr && std::strcmp(type, "dumb") != 0;
}

winsize TerminalSize(int fd) {
    winsize size{};
    const bool told = ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0;
    return told ? size : usualSize;
}

Terminal::Terminal(int fd) : fd(fd), before(Settings(fd)) {
    Enter();
}

Terminal::~Terminal() {
    Leave();
}

bool Terminal::Draw(const std::vector<std::string>& lines) {
    std::string text = shown ? "" : "\x1b[2J";
    for (std::size_t line = 0; line < lines.size(); ++line) {
        if (!shown || line >= shown->size() || (*shown)[line] != lines[line]) {
            text += "\x1b[" + std::to_string(line + 1) + ";1H\x1b[2K" + lines[line];
        }
    }
    shown = lines;
    return Write(fd, text);
}

std::string Terminal::ReadKeys() const {
    std::string typed;
    std::array<char, 256> bytes{};
    if (before) {
        const ssize_t length = read(fd, bytes.data(), bytes.size());
        typed.assign(bytes.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    }
    return typed;
}

void Terminal::Suspend() {
    Leave();
    raise(SIGSTOP);
    Enter();
}

void Terminal::Enter() {
    if (before) {
        termios raw = *before;
        raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        raw.c_cc[VMIN] = 0; // a read returns at once
        raw.c_cc[VTIME] = 0;
        tcsetattr(fd, TCSANOW, &raw);
    }
    Write(fd, takeScreen);
    Forget();
}

void Terminal::Leave() const {
    Write(fd, giveScreen);
    if (before) {
        tcsetattr(fd, TCSANOW, &*before);
    }
}

} // namespace monitor
