# SPDX-License-Identifier: Apache-2.0
"""An interface, as its description in YAML tells it, in the words that the templates use."""

import re
import textwrap
from dataclasses import dataclass

import yaml

from bindings.cpp_types import CppType, DescriptionError, default_literal, parse_type

FLAGS = {"const", "readonly"}


@dataclass(frozen=True)
class Enumeration:
    """An enumeration of the interface. values: pairs of name and description."""

    name: str
    description: str
    values: list


@dataclass(frozen=True)
class Property:
    """A property of the interface."""

    name: str
    method: str
    type: CppType
    default: str
    description: str
    const: bool
    readonly: bool

    @property
    def flag(self):
        """The property's flag in the table for sd-bus."""
        return "const_" if self.const else "emits_change"


@dataclass(frozen=True)
class Signal:
    """A signal of the interface. It is declared on the bus; nothing here emits it."""

    name: str
    arguments: list

    @property
    def signature(self):
        """The D-Bus types of the arguments."""
        return "".join(type_.signature for type_ in self.arguments)


@dataclass(frozen=True)
class Interface:
    """A whole interface."""

    name: str
    description: str
    properties: list
    signals: list
    enumerations: list
    write_hook: bool  # a derived class sees every write

    @property
    def class_name(self):
        return self.name.split(".")[-1]

    @property
    def namespace(self):
        return "::".join(["sdbusplus", "server", *self.name.lower().split(".")[:-1]])

    @property
    def path(self):
        """The interface's place in the tree of descriptions and in that of the headers."""
        return self.name.replace(".", "/")

    @property
    def variant_types(self):
        """The C++ types of all properties, each once, in alphabetical order."""
        return sorted({p.type.cpp for p in self.properties})


def method_name(name):
    """Returns the C++ name of a property or signal: a leading run of capitals becomes small, except
    for the last one where a small letter follows: LDID is ldid, ECLevel is ecLevel, Key is key."""
    run = re.match(r"[A-Z]+(?![a-z])|[A-Z]", name)
    if run is None:
        return name
    return run.group().lower() + name[run.end():]


def comment(text, indent=0):
    """Returns text as a documentation comment."""
    prefix = " " * indent
    words = " ".join(text.split())
    if len(prefix) + len(words) + len("/** . */") <= 100:
        return f"{prefix}/** {words} */"
    lines = textwrap.wrap(words, 100 - indent - len(" *  "))
    return "\n".join(
        [f"{prefix}/** {lines[0]}"] + [f"{prefix} *  {line}" for line in lines[1:-1]]
        + [f"{prefix} *  {lines[-1]} */"]
    )


def load_interface(path, name, write_hook=False):
    """Reads the description of the interface called name from the file at path.

    Raises DescriptionError where the description is wrong."""
    with open(path, encoding="utf-8") as file:
        try:
            document = yaml.safe_load(file)
        except yaml.YAMLError as error:
            raise DescriptionError(str(error)) from error
    _check_keys(name, document, {"description"}, {"properties", "signals", "enumerations"})
    enumerations = [_enumeration(entry) for entry in document.get("enumerations", [])]
    enums = {e.name: [value for value, _ in e.values] for e in enumerations}
    return Interface(
        name=name,
        description=document["description"],
        properties=[_property(entry, enums) for entry in document.get("properties", [])],
        signals=[_signal(entry) for entry in document.get("signals", [])],
        enumerations=enumerations,
        write_hook=write_hook,
    )


def _check_keys(what, entry, required, optional=frozenset()):
    """Refuses an entry that lacks something or has something that would be ignored."""
    if not isinstance(entry, dict):
        raise DescriptionError(f"{what} isn't a mapping")
    missing = required - entry.keys()
    unknown = entry.keys() - required - optional
    if missing or unknown:
        raise DescriptionError(f"{what}: missing {sorted(missing)}, unknown {sorted(unknown)}")


def _enumeration(entry):
    _check_keys("enumeration", entry, {"name", "values"}, {"description"})
    values = []
    for value in entry["values"]:
        _check_keys(f"a value of {entry['name']}", value, {"name"}, {"description"})
        values.append((value["name"], value.get("description", "")))
    names = [name for name, _ in values]
    if not names or len(set(names)) != len(names):
        raise DescriptionError(f"{entry['name']} is empty or has a value twice")
    return Enumeration(entry["name"], entry.get("description", ""), values)


def _property(entry, enums):
    _check_keys("property", entry, {"name", "type", "description"}, {"default", "flags"})
    flags = set(entry.get("flags", []))
    if not flags <= FLAGS:
        raise DescriptionError(f"{entry['name']}: unknown flags {sorted(flags - FLAGS)}")
    type_ = parse_type(entry["type"], enums)
    return Property(
        name=entry["name"],
        method=method_name(entry["name"]),
        type=type_,
        default=default_literal(type_, entry.get("default"), enums.get(type_.enum)),
        description=entry["description"],
        const="const" in flags,
        readonly=bool(flags),
    )


def _signal(entry):
    _check_keys("signal", entry, {"name", "description"}, {"properties"})
    arguments = []
    for argument in entry.get("properties", []):
        _check_keys(f"an argument of {entry['name']}", argument, {"name", "type"}, {"description"})
        arguments.append(parse_type(argument["type"], {}))
    return Signal(entry["name"], arguments)
