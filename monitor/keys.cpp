// SPDX-License-Identifier: Apache-2.0
#include "keys.hpp"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

namespace monitor {

namespace {

constexpr char escape = '\x1b';

/** What follows the escape character. */
const std::map<std::string_view, Key> sequences{
    {"[A", Key::UP},       {"OA", Key::UP},         {"[B", Key::DOWN}, {"OB", Key::DOWN},
    {"[5~", Key::PAGE_UP}, {"[6~", Key::PAGE_DOWN}, {"[H", Key::HOME}, {"OH", Key::HOME},
    {"[1~", Key::HOME},    {"[7~", Key::HOME},      {"[F", Key::END},  {"OF", Key::END},
    {"[4~", Key::END},     {"[8~", Key::END},
};

bool IsBetween(char character, char least, char most) {
    return character >= least && character <= most;
}

/** Length of the sequence that the text, which begins with an escape, starts with: 1 for the key
 *  itself, nothing if the end is still to come. */
std::optional<std::size_t> SequenceLength(std::string_view text) {
    if (text.size() < 2) {
        return std::nullopt;
    }
    if (text[1] != '[' && text[1] != 'O') {
        return 1;
    }
    std::size_t end = 2;
    while (end < text.size() && IsBetween(text[end], ' ', '?')) {
        ++end;
    }
    return end < text.size() ? std::optional(end + 1) : std::nullopt;
}

std::optional<KeyPress> SequenceKey(std::string_view sequence) {
    if (sequence.size() == 1) {
        return KeyPress{Key::ESCAPE};
    }
    const auto found = sequences.find(sequence.substr(1));
    return found == sequences.end() ? std::nullopt : std::optional(KeyPress{found->second});
}

std::optional<KeyPress> CharacterKey(char character) {
    if (character == '\r' || character == '\n') {
        return KeyPress{Key::ENTER};
    }
    if (character == '\b' || character == '\x7f') {
        return KeyPress{Key::ERASE};
    }
    return IsBetween(character, ' ', '~') ? std::optional(KeyPress{Key::CHARACTER, character})
                                          : std::nullopt;
}

/** The keys for which it makes no difference whether the filter is being typed. */
void Scroll(Key key, std::size_t page, std::size_t& scroll) {
    const auto back = [&](std::size_t lines) { scroll -= std::min(scroll, lines); };
    switch (key) {
    case Key::UP:
        return back(1);
    case Key::PAGE_UP:
        return back(page);
    case Key::HOME:
        return back(scroll);
    case Key::DOWN:
        ++scroll;
        return;
    case Key::PAGE_DOWN:
        scroll += page;
        return;
    case Key::END:
        scroll = std::numeric_limits<std::size_t>::max() / 2;
        return;
    case Key::CHARACTER:
    case Key::ENTER:
    case Key::ERASE:
    case Key::ESCAPE:
        return;
    }
}

void Type(const KeyPress& press, View& view) {
    view.scroll = 0;
    if (press.key == Key::CHARACTER) {
        view.filter += press.character;
    } else if (press.key == Key::ERASE && !view.filter.empty()) {
        view.filter.pop_back();
    } else {
        view.typing = false;
    }
}

} // namespace

std::vector<KeyPress> KeyReader::Read(std::string_view bytes) {
    buffer += bytes;
    std::vector<KeyPress> keys;
    while (!buffer.empty()) {
        const bool isSequence = buffer.front() == escape;
        const auto length = isSequence ? SequenceLength(buffer) : std::optional<std::size_t>(1);
        if (!length) {
            break;
        }
        const auto key = isSequence ? SequenceKey(std::string_view(buffer).substr(0, *length))
                                    : CharacterKey(buffer.front());
        if (key) {
            keys.push_back(*key);
        }
        buffer.erase(0, *length);
    }
    return keys;
}

std::vector<KeyPress> KeyReader::Flush() {
    const bool pending = Pending();
    buffer.clear();
    return pending ? std::vector{KeyPress{Key::ESCAPE}} : std::vector<KeyPress>();
}

Wish Apply(const KeyPress& press, std::size_t page, View& view) {
    Scroll(press.key, page, view.scroll);
    const bool isText = press.key == Key::CHARACTER;
    if (press.key == Key::ESCAPE) {
        view.filter.clear();
        view.typing = false;
    } else if (view.typing && (isText || press.key == Key::ERASE || press.key == Key::ENTER)) {
        Type(press, view);
    } else if (isText && press.character == '/') {
        view.filter.clear();
        view.typing = true;
    } else if (isText && press.character == 'q') {
        return Wish::QUIT;
    }
    return Wish::STAY;
}

} // namespace monitor
