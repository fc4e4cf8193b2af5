// SPDX-License-Identifier: Apache-2.0
/** Checked reading of a JSON object that people write. */
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace board {

/** Whether an object may do without a key. */
enum class Presence { REQUIRED, OPTIONAL };

/** One object, and the mistakes in it, each with its JSON path and what is expected. */
class JsonEntry {
public:
    using Words = std::span<const std::pair<const char*, std::uint32_t>>;

    /** object, path and mistakes outlive this. A value that is no object is a mistake. */
    JsonEntry(const nlohmann::json& object, std::string path, std::vector<std::string>& mistakes);

    /** Reads a number from least to most: a JSON number, or a text in hexadecimal with 0x. Empty if
     *  the key isn't there, or if its value is a mistake. */
    std::optional<std::uint32_t> Number(const char* key, std::uint32_t least, std::uint32_t most,
                                        Presence presence);

    /** Reads one of some words, or a number up to most. */
    std::optional<std::uint32_t> WordOrNumber(const char* key, Words words, std::uint32_t most,
                                              Presence presence);

    /** Reads one of some words. */
    std::optional<std::uint32_t> Word(const char* key, Words words, Presence presence);

    /** Reads true or false; false if the key isn't there. */
    bool Flag(const char* key);

    /** Reads a text. */
    std::optional<std::string> Text(const char* key);

    /** Reads a text where the value is one; nothing is a mistake. */
    std::optional<std::string> TextIfAny(const char* key);

    /** Reads a list; a mistake if it is something else. Empty if the key isn't there. */
    std::span<const nlohmann::json> List(const char* key);

    bool Has(const char* key) const;

    /** Adds a mistake in the value of a key, or in the object where key is null. expected follows
     *  the word "expected". */
    void Reject(const char* key, const std::string& expected);

    /** Ends the reading: a key that wasn't asked for is a mistake, except "comment". True if the
     *  object had no mistake. */
    bool Finish();

private:
    const nlohmann::json* Find(const char* key, Presence presence);

    const nlohmann::json& object;
    std::string path;
    std::vector<std::string>& mistakes;
    std::set<std::string> known{"comment"};
    bool good = true;
};

} // namespace board
