# SPDX-License-Identifier: Apache-2.0
"""Types of the interface descriptions, as C++ and as D-Bus have them."""

import re
from dataclasses import dataclass

# Name in the description: C++ type, D-Bus type.
BASIC_TYPES = {
    "boolean": ("bool", "b"),
    "byte": ("std::uint8_t", "y"),
    "int16": ("std::int16_t", "n"),
    "uint16": ("std::uint16_t", "q"),
    "int32": ("std::int32_t", "i"),
    "uint32": ("std::uint32_t", "u"),
    "int64": ("std::int64_t", "x"),
    "uint64": ("std::uint64_t", "t"),
    "double": ("double", "d"),
    "string": ("std::string", "s"),
    "object_path": ("sdbusplus::message::object_path", "o"),
}

# Container: C++ template, its D-Bus type around the members, number of members (None: any).
CONTAINERS = {
    "array": ("std::vector", "a{}", 1),
    "dict": ("std::map", "a{{{}}}", 2),
    "struct": ("std::tuple", "({})", None),
}

SPECIAL_DOUBLES = {
    "infinity": "std::numeric_limits<double>::infinity()",
    "-infinity": "-std::numeric_limits<double>::infinity()",
    "NaN": "std::numeric_limits<double>::quiet_NaN()",
}

TOKEN = re.compile(r"[\w.]+|[\[\],]")


class DescriptionError(ValueError):
    """A type or a value of one that the description gets wrong."""


@dataclass(frozen=True)
class CppType:
    """One type: its C++ name, its D-Bus signature and, for an enumeration, that one's name."""

    cpp: str
    signature: str
    enum: str | None = None

    @property
    def wire(self):
        """The C++ type that travels over D-Bus: enumerations go as text."""
        return "std::string" if self.enum else self.cpp


def parse_type(text, enums):
    """Returns the CppType of a text such as "array[struct[string,uint32]]".

    enums holds the names of the interface's own enumerations."""
    tokens = TOKEN.findall(text)
    if "".join(tokens) != text.replace(" ", ""):
        raise DescriptionError(f"malformed type '{text}'")
    parsed, rest = _parse(tokens, text, enums)
    if rest:
        raise DescriptionError(f"malformed type '{text}'")
    return parsed


def _parse(tokens, text, enums):
    """Takes one type off the front of tokens. Returns it and what is left."""
    if not tokens:
        raise DescriptionError(f"malformed type '{text}'")
    name, rest = tokens[0], tokens[1:]
    if name in BASIC_TYPES:
        return CppType(*BASIC_TYPES[name]), rest
    if name == "enum":
        return _parse_enum(rest, text, enums)
    if name not in CONTAINERS:
        raise DescriptionError(f"unknown type '{name}' in '{text}'")
    members = []
    separator = "["
    while rest and rest[0] == separator:
        member, rest = _parse(rest[1:], text, enums)
        if member.enum:
            raise DescriptionError(f"an enumeration inside '{text}'; it can only stand alone")
        members.append(member)
        separator = ","
    if not rest or rest[0] != "]" or not members:
        raise DescriptionError(f"malformed type '{text}'")
    return _container(name, members, text), rest[1:]


def _parse_enum(tokens, text, enums):
    if len(tokens) < 3 or tokens[0] != "[" or tokens[2] != "]":
        raise DescriptionError(f"malformed type '{text}'")
    owner, _, name = tokens[1].partition(".")
    if owner != "self" or name not in enums:
        raise DescriptionError(f"'{tokens[1]}' is no enumeration of this interface")
    return CppType(name, "s", enum=name), tokens[3:]


def _container(name, members, text):
    template, signature, count = CONTAINERS[name]
    if count is not None and len(members) != count:
        raise DescriptionError(f"{name} in '{text}' takes {count} type(s)")
    if name == "dict" and len(members[0].signature) != 1:
        raise DescriptionError(f"the key of a dict in '{text}' isn't a basic type")
    return CppType(
        f"{template}<{', '.join(m.cpp for m in members)}>",
        signature.format("".join(m.signature for m in members)),
    )


def default_literal(cpp_type, default, enum_values):
    """Returns the C++ initialiser for a default of the description; None means the type's own.

    enum_values are the enumerators of the type, if it is an enumeration."""
    if cpp_type.enum:
        value = enum_values[0] if default is None else default
        if value not in enum_values:
            raise DescriptionError(f"default '{value}' is no value of {cpp_type.enum}")
        return f"{cpp_type.enum}::{value}"
    if default is None:
        return ""
    if cpp_type.cpp == "bool" and isinstance(default, bool):
        return "true" if default else "false"
    if cpp_type.cpp == "std::string" and isinstance(default, str):
        escaped = default.replace("\\", "\\\\").replace('"', '\\"')
        return f'"{escaped}"'
    if cpp_type.cpp == "double" and default in SPECIAL_DOUBLES:
        return SPECIAL_DOUBLES[default]
    is_number = isinstance(default, (int, float)) and not isinstance(default, bool)
    if cpp_type.cpp == "double" and is_number:
        return repr(float(default))
    if cpp_type.signature in "ynqiuxt" and isinstance(default, int) and is_number:
        return str(default)
    raise DescriptionError(f"default '{default}' doesn't fit {cpp_type.cpp}")
