// SPDX-License-Identifier: Apache-2.0
/** The terminal that the table is shown on. */
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/ioctl.h>
#include <termios.h>

namespace monitor {

/** Writes all of the text, or returns false if the output is closed. */
bool Write(int fd, std::string_view text);

/** Whether there is a terminal that understands escape sequences. */
bool IsTerminal(int fd);

/** The size of the terminal, or the usual one if it doesn't tell. */
winsize TerminalSize(int fd);

/** Takes the whole of a terminal for as long as it lives: lines on its second screen, and keys
 *  without echo as they are pressed. Ctrl-C and Ctrl-Z stay signals. What was there before comes
 *  back at the end. Reads keys from where it writes, since what a script starts in the background
 *  has no standard input. */
class Terminal {
public:
    /** fd stays the caller's. */
    explicit Terminal(int fd);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /** Shows the lines, writing those that differ. They must fit. Returns false if the output
     *  is closed. */
    bool Draw(const std::vector<std::string>& lines);

    /** What was on the screen may be gone: the next Draw() writes all. */
    void Forget() { shown.reset(); }

    /** Whether keys can be read. */
    bool HasKeys() const { return before.has_value(); }

    /** The bytes of the keys pressed since the last call; doesn't wait. */
    std::string ReadKeys() const;

    /** Gives the terminal back, stops this process, and takes it again when it goes on. */
    void Suspend();

private:
    void Enter();
    void Leave() const;

    int fd;
    std::optional<termios> before; ///< the terminal's settings; nothing where keys can't be read
    std::optional<std::vector<std::string>> shown;
};

} // namespace monitor
