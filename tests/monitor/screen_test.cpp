#include "monitor/screen.hpp"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {

using monitor::Screen;

/// A terminal: what a program writes to it can be read.
class Terminal {
public:
    Terminal(unsigned short rows, unsigned short columns) {
        winsize size{.ws_row = rows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        termios raw{};
        cfmakeraw(&raw);
        EXPECT_EQ(0, openpty(&reader, &writer, nullptr, &raw, &size));
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        close(reader);
        close(writer);
    }

    int Writer() const { return writer; }

    std::string Read() const {
        std::string text;
        std::array<char, 4096> buffer{};
        pollfd ready{.fd = reader, .events = POLLIN, .revents = 0};
        while (poll(&ready, 1, 0) > 0) {
            const ssize_t length = read(reader, buffer.data(), buffer.size());
            text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
        }
        return text;
    }

private:
    int reader = -1;
    int writer = -1;
};

TEST(Screen, PutsEachFrameInThePlaceOfTheOneBefore) {
    const Terminal terminal(10, 40);
    Screen screen(terminal.Writer());
    EXPECT_TRUE(screen.IsTerminal());
    EXPECT_EQ(screen.Width(), 40U);
    screen.Draw({"one", "two"});
    EXPECT_EQ(terminal.Read(), "one\ntwo\n");
    screen.Draw({"three"});
    EXPECT_EQ(terminal.Read(), "\x1b[2A\r\x1b[Jthree\n");
    screen.Finish({"last"});
    EXPECT_EQ(terminal.Read(), "\x1b[1A\r\x1b[Jlast\n");
}

TEST(Screen, ShowsWhatFitsAndAtTheEndAll) {
    const Terminal terminal(4, 40);
    Screen screen(terminal.Writer());
    screen.Draw({"1", "2", "3"});
    EXPECT_EQ(terminal.Read(), "1\n2\n3\n");
    screen.Draw({"1", "2", "3", "4"});
    EXPECT_EQ(terminal.Read(), "\x1b[3A\r\x1b[J1\n2\n... 2 more lines\n");
    screen.Finish({"1", "2", "3", "4", "5"});
    EXPECT_EQ(terminal.Read(), "\x1b[3A\r\x1b[J1\n2\n3\n4\n5\n");
}

TEST(Screen, SaysThatNobodyReads) {
    std::array<int, 2> ends{};
    ASSERT_EQ(0, pipe(ends.data()));
    close(ends[0]);
    Screen screen(ends[1]);
    const auto previous = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_FALSE(screen.Draw({"one"}));
    std::signal(SIGPIPE, previous);
    close(ends[1]);
}

} // namespace
