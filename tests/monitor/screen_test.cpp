#include "monitor/screen.hpp"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {

using monitor::Screen;

/// Both ends of a pipe or of a terminal: what is written to one is read from the other.
class Ends {
public:
    Ends(int reader, int writer) : reader(reader), writer(writer) {}
    Ends(const Ends&) = delete;
    Ends& operator=(const Ends&) = delete;

    ~Ends() {
        CloseReader();
        close(writer);
    }

    static Ends Pipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(0, pipe(ends.data()));
        return {ends[0], ends[1]};
    }

    static Ends Terminal(unsigned short rows, unsigned short columns) {
        int reader = -1;
        int writer = -1;
        winsize size{.ws_row = rows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        termios raw{};
        cfmakeraw(&raw);
        EXPECT_EQ(0, openpty(&reader, &writer, nullptr, &raw, &size));
        return {reader, writer};
    }

    int Writer() const { return writer; }

    void CloseReader() {
        if (reader >= 0) {
            close(reader);
            reader = -1;
        }
    }

    std::string Read() const {
        std::string text;
        std::array<char, 4096> buffer{};
        pollfd ready{.fd = reader, .events = POLLIN, .revents = 0};
        while (poll(&ready, 1, 0) > 0) {
            const ssize_t length = read(reader, buffer.data(), buffer.size());
            if (length <= 0) {
                break;
            }
            text.append(buffer.data(), static_cast<std::size_t>(length));
        }
        return text;
    }

private:
    int reader;
    int writer;
};

TEST(Screen, WritesPlainFramesToAPipe) {
    const Ends ends = Ends::Pipe();
    Screen screen(ends.Writer());
    EXPECT_FALSE(screen.IsTerminal());
    EXPECT_EQ(screen.Width(), 0U);
    EXPECT_TRUE(screen.Draw({"one", "two"}));
    EXPECT_TRUE(screen.Finish({"three"}));
    EXPECT_EQ(ends.Read(), "one\ntwo\n\nthree\n");
}

TEST(Screen, PutsEachFrameInThePlaceOfTheOneBefore) {
    const Ends ends = Ends::Terminal(10, 40);
    Screen screen(ends.Writer());
    EXPECT_TRUE(screen.IsTerminal());
    EXPECT_EQ(screen.Width(), 40U);
    screen.Draw({"one", "two"});
    EXPECT_EQ(ends.Read(), "one\ntwo\n");
    screen.Draw({"three"});
    EXPECT_EQ(ends.Read(), "\x1b[2A\r\x1b[Jthree\n");
    screen.Finish({"last"});
    EXPECT_EQ(ends.Read(), "\x1b[1A\r\x1b[Jlast\n");
}

TEST(Screen, ShowsWhatFitsAndAtTheEndAll) {
    const Ends ends = Ends::Terminal(4, 40);
    Screen screen(ends.Writer());
    screen.Draw({"1", "2", "3"});
    EXPECT_EQ(ends.Read(), "1\n2\n3\n");
    screen.Draw({"1", "2", "3", "4"});
    EXPECT_EQ(ends.Read(), "\x1b[3A\r\x1b[J1\n2\n... 2 more lines\n");
    screen.Finish({"1", "2", "3", "4", "5"});
    EXPECT_EQ(ends.Read(), "\x1b[3A\r\x1b[J1\n2\n3\n4\n5\n");
}

TEST(Screen, SaysThatNobodyReads) {
    Ends ends = Ends::Pipe();
    Screen screen(ends.Writer());
    ends.CloseReader();
    const auto previous = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_FALSE(screen.Draw({"one"}));
    std::signal(SIGPIPE, previous);
}

} // namespace
