#include "screen.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace monitor {

namespace {

/// Size of a terminal that doesn't tell its own.
constexpr winsize usualSize{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};

winsize TerminalSize(int fd) {
    winsize size{};
    const bool told = ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0;
    return told ? size : usualSize;
}

std::string Joined(const std::vector<std::string>& lines, std::size_t count) {
    std::string text;
    for (std::size_t line = 0; line < count; ++line) {
        text += lines[line] + '\n';
    }
    return text;
}

} // namespace

Screen::Screen(int fd) : fd(fd), terminal(isatty(fd) == 1) {}

std::size_t Screen::Width() const {
    return terminal ? TerminalSize(fd).ws_col : 0;
}

bool Screen::Draw(const std::vector<std::string>& lines) {
    if (!terminal) {
        return Write(Joined(lines, lines.size()) + '\n');
    }
    // The cursor stands below the frame, so one line of the terminal isn't the frame's.
    const std::size_t room = TerminalSize(fd).ws_row - std::size_t{1};
    std::string frame = EraseFrame();
    if (lines.size() <= room || room == 0) {
        frame += Joined(lines, lines.size());
        frameHeight = lines.size();
    } else {
        frame += Joined(lines, room - 1);
        frame += "... " + std::to_string(lines.size() - room + 1) + " more lines\n";
        frameHeight = room;
    }
    return Write(frame);
}

bool Screen::Finish(const std::vector<std::string>& lines) {
    const std::string frame = EraseFrame() + Joined(lines, lines.size());
    frameHeight = 0;
    return Write(frame);
}

std::string Screen::EraseFrame() const {
    return frameHeight == 0 ? "" : "\x1b[" + std::to_string(frameHeight) + "A\r\x1b[J";
}

bool Screen::Write(const std::string& text) const {
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t written = write(fd, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace monitor
