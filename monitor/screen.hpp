/** Where the table is shown. */
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace monitor {

/** A terminal, on which each frame takes the place of the one before, or a file or pipe, to which
 *  frames are written one after the other with no control codes. */
class Screen {
public:
    /** fd stays the caller's. */
    explicit Screen(int fd);

    bool IsTerminal() const { return terminal; }

    /** Columns of the terminal, 0 where there is no limit. */
    std::size_t Width() const;

    /** Shows a frame, on a terminal as much of it as fits. Returns false if nobody can see it. */
    bool Draw(const std::vector<std::string>& lines);

    /** Shows the last frame in full. */
    bool Finish(const std::vector<std::string>& lines);

private:
    std::string EraseFrame() const;
    bool Write(const std::string& text) const;

    int fd;
    bool terminal;
    std::size_t frameHeight = 0;
};

} // namespace monitor
