// SPDX-License-Identifier: Apache-2.0
/** The words of a command. */
#pragma once

#include "number_text.hpp"
#include "scenario/named_number.hpp"

#include <concepts>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace simulator {

/** A command that can't be carried out. what() says why. */
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** The words of a command, taken one by one. what names what is expected, for the message. */
class Words {
public:
    explicit Words(std::vector<std::string> words) : words(std::move(words)) {}

    bool HasMore() const { return position < words.size(); }

    std::string Next(std::string_view what) {
        if (!HasMore()) {
            throw CommandError(std::string(what) + " is missing");
        }
        return words[position++];
    }

    template <std::integral T>
    T Integer(std::string_view what) {
        const auto word = Next(what);
        const auto value = ParseInteger(word);
        if (!value || *value < static_cast<std::int64_t>(std::numeric_limits<T>::min()) ||
            *value > static_cast<std::int64_t>(std::numeric_limits<T>::max())) {
            throw CommandError("\"" + word + "\" is no good as " + std::string(what));
        }
        return static_cast<T>(*value);
    }

    double Real(std::string_view what) {
        const auto word = Next(what);
        const auto value = ParseReal(word);
        if (!value) {
            throw CommandError("\"" + word + "\" is no good as " + std::string(what));
        }
        return *value;
    }

    /** A word of the table, or the number itself. */
    std::uint8_t Named(std::string_view what, std::span<const NamedNumber> names) {
        for (const auto& name : names) {
            if (HasMore() && words[position] == name.name) {
                ++position;
                return static_cast<std::uint8_t>(name.number);
            }
        }
        return Integer<std::uint8_t>(what);
    }

    /** Takes a word if it is the one. */
    bool Take(std::string_view word) {
        const bool there = HasMore() && words[position] == word;
        position += there ? 1 : 0;
        return there;
    }

    void Finish() const {
        if (HasMore()) {
            throw CommandError("\"" + words[position] + "\" is too much");
        }
    }

private:
    std::vector<std::string> words;
    std::size_t position = 0;
};

} // namespace simulator
