// SPDX-License-Identifier: Apache-2.0
/** The D-Bus signature of a C++ type, made at compile time. */
#pragma once

#include "sdbusplus/message/native_types.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace sdbusplus::message::types {

/** A signature of Length characters, with the null byte that ends it in C. */
template <std::size_t Length>
struct Signature {
    std::array<char, Length + 1> text{};

    /** Returns the signature as a C string. */
    constexpr const char* c_str() const { return text.data(); }
};

/** Joins signatures. */
template <std::size_t Left, std::size_t Right>
constexpr Signature<Left + Right> operator+(const Signature<Left>& left,
                                            const Signature<Right>& right) {
    Signature<Left + Right> joined;
    for (std::size_t i = 0; i < Left; ++i) {
        joined.text[i] = left.text[i];
    }
    for (std::size_t i = 0; i < Right; ++i) {
        joined.text[Left + i] = right.text[i];
    }
    return joined;
}

/** The signature of one character. */
constexpr Signature<1> One(char type) {
    return Signature<1>{{type, '\0'}};
}

/** The signature of a C++ type. Types that D-Bus doesn't have are left undefined. */
template <typename T>
struct SignatureOf;

/** The signatures of several types, one after the other. */
template <typename... T>
inline constexpr auto joined_v = (Signature<0>{} + ... + SignatureOf<T>::value);

/** The signature of a type. */
template <typename T>
inline constexpr auto signature_v = SignatureOf<T>::value;

/** What all types with a one-character signature have. */
template <char Type>
struct BasicSignature {
    static constexpr char type = Type;
    static constexpr auto value = One(Type);
};

template <>
struct SignatureOf<bool> : BasicSignature<'b'> {};
template <>
struct SignatureOf<std::uint8_t> : BasicSignature<'y'> {};
template <>
struct SignatureOf<std::int16_t> : BasicSignature<'n'> {};
template <>
struct SignatureOf<std::uint16_t> : BasicSignature<'q'> {};
template <>
struct SignatureOf<std::int32_t> : BasicSignature<'i'> {};
template <>
struct SignatureOf<std::uint32_t> : BasicSignature<'u'> {};
template <>
struct SignatureOf<std::int64_t> : BasicSignature<'x'> {};
template <>
struct SignatureOf<std::uint64_t> : BasicSignature<'t'> {};
template <>
struct SignatureOf<double> : BasicSignature<'d'> {};
template <>
struct SignatureOf<std::string> : BasicSignature<'s'> {};
template <>
struct SignatureOf<object_path> : BasicSignature<'o'> {};

template <typename... T>
struct SignatureOf<std::variant<T...>> : BasicSignature<'v'> {};

template <typename T>
struct SignatureOf<std::vector<T>> {
    static constexpr auto value = One('a') + signature_v<T>;
};

/** A dictionary entry; on its own D-Bus has it only as the element of an array. */
template <typename Key, typename Value>
struct SignatureOf<std::pair<Key, Value>> {
    static constexpr auto value = One('{') + joined_v<std::remove_const_t<Key>, Value> + One('}');
};

template <typename Key, typename Value>
struct SignatureOf<std::map<Key, Value>> {
    static constexpr auto value = One('a') + signature_v<std::pair<Key, Value>>;
};

template <typename Key, typename Value>
struct SignatureOf<std::unordered_map<Key, Value>> {
    static constexpr auto value = One('a') + signature_v<std::pair<Key, Value>>;
};

template <typename... T>
struct SignatureOf<std::tuple<T...>> {
    static constexpr auto value = One('(') + joined_v<T...> + One(')');
};

/** Numbers that stand on the wire as they do in memory; bool doesn't. */
template <typename T>
concept Number = std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && requires {
    SignatureOf<T>::type;
};

} // namespace sdbusplus::message::types
