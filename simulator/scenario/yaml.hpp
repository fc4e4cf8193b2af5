// SPDX-License-Identifier: Apache-2.0
/** YAML with messages that say where. */
#pragma once

#include "scenario/named_number.hpp"

#include <concepts>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <yaml-cpp/yaml.h>

namespace simulator {

/** A scenario that can't be played. what() is "file:line: text", as compilers write it. */
class ScenarioError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/** One node of a scenario. Every operation that doesn't find what it expects throws
 *  ScenarioError with the node's line. */
class Value {
public:
    Value(const YAML::Node& node, std::shared_ptr<const std::string> file)
        : node(node), file(std::move(file)) {}

    /** Reads a whole file. */
    static Value FromFile(const std::string& path);

    bool IsScalar() const { return node.IsScalar(); }
    bool IsMapping() const { return node.IsMap(); }
    bool IsSequence() const { return node.IsSequence(); }

    std::string Text() const;
    /** "true" or "false". */
    bool Truth() const;
    /** A finite number. */
    double Real() const;
    /** Bytes as hexadecimal digits; blanks between bytes don't count. */
    std::vector<std::uint8_t> Hex() const;
    /** An integer within the limits of its type or within the given ones, decimal or with 0x. */
    template <std::integral T>
    T Integer(T least = std::numeric_limits<T>::min(),
              T most = std::numeric_limits<T>::max()) const {
        return static_cast<T>(
            IntegerWithin(static_cast<std::int64_t>(least), static_cast<std::int64_t>(most)));
    }
    /** A word of the table, or the number itself. */
    template <std::integral T>
    T Named(std::span<const NamedNumber> names) const {
        const auto number = Lookup(names);
        return number ? static_cast<T>(*number) : Integer<T>();
    }

    /** The entries of a sequence, in order. */
    std::vector<Value> Items() const;
    /** The entries of a mapping, in order; no key may stand twice. */
    std::vector<std::pair<Value, Value>> Entries() const;

    [[noreturn]] void Fail(const std::string& text) const;

private:
    std::int64_t IntegerWithin(std::int64_t least, std::int64_t most) const;
    std::optional<std::uint32_t> Lookup(std::span<const NamedNumber> names) const;

    YAML::Node node;
    std::shared_ptr<const std::string> file;
};

/** A mapping with a known set of keys: what isn't asked for until Finish is an error, so that a
 *  mistyped key can't pass unnoticed. */
class Mapping {
public:
    explicit Mapping(const Value& value);

    /** The value of a key, if it is there. */
    std::optional<Value> Find(std::string_view key);
    /** The value of a key that must be there. */
    Value Get(std::string_view key);

    /** Reads a key into a field, which stays as it is if the key isn't there. */
    template <std::integral T>
    void Read(std::string_view key, T& field) {
        if (const auto value = Find(key)) {
            field = value->Integer<T>();
        }
    }
    void Read(std::string_view key, bool& field);
    void Read(std::string_view key, double& field);
    void Read(std::string_view key, float& field);
    void Read(std::string_view key, std::string& field);
    template <std::integral T>
    void Read(std::string_view key, T& field, std::span<const NamedNumber> names) {
        if (const auto value = Find(key)) {
            field = value->Named<T>(names);
        }
    }
    template <std::integral T>
    void Read(std::string_view key, std::optional<T>& field) {
        if (const auto value = Find(key)) {
            field = value->Integer<T>();
        }
    }
    void Read(std::string_view key, std::optional<double>& field);

    /** Refuses a key that isn't known. */
    void Finish() const;

    [[noreturn]] void Fail(const std::string& text) const { whole.Fail(text); }

private:
    Value whole;
    std::vector<std::pair<Value, Value>> entries;
    std::set<std::string, std::less<>> asked;
};

} // namespace simulator
