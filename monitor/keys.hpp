// SPDX-License-Identifier: Apache-2.0
/** The keys, and what they do to the view. */
#pragma once

#include "view.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace monitor {

enum class Key { CHARACTER, UP, DOWN, PAGE_UP, PAGE_DOWN, HOME, END, ENTER, ERASE, ESCAPE };

struct KeyPress {
    Key key;
    char character = '\0'; ///< printable ASCII, for Key::CHARACTER

    bool operator==(const KeyPress&) const = default;
};

/** Tells keys from what a terminal sends for them (ECMA-48, with xterm's sequences). */
class KeyReader {
public:
    /** Takes the bytes and returns the keys that are complete with them. */
    std::vector<KeyPress> Read(std::string_view bytes);

    /** Whether what came last may be the start of a sequence. */
    bool Pending() const { return !buffer.empty(); }

    /** Nothing more comes: what is pending was the escape key. */
    std::vector<KeyPress> Flush();

private:
    std::string buffer;
};

enum class Wish { STAY, QUIT };

/** Carries out a key. A page is as many lines as the table has on the screen. */
Wish Apply(const KeyPress& press, std::size_t page, View& view);

} // namespace monitor
