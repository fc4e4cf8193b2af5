#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Compares the daemon's objects on the system bus with what a person has written down.

    bus_dump.py FILE.bus
    bus_dump.py --play BUILD FOLDER

Waits up to 30 s until the objects are those of the file, with all interfaces, members and
values. Prints what is different then, in the words of such a file, and fails. With --play it does so
for each scenario of the folder, with a daemon of its own, but for the storm's, which is made to change.
"""

import itertools
import json
import re
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from collections import ChainMap
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from processes import Server, run

SERVICE = "com.korv.zenth.vantricd"
SENSORS = "/xyz/openbmc_project/sensors/"
INVENTORY = "/xyz/openbmc_project/inventory/system/"
PATIENCE = 30  # seconds
PAUSE = 0.1    # between two looks


def read_lines(file, take):
    """Calls take() with the fields of each line, and says where one makes no sense."""
    entries = []
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith(" "):
            entries[-1][1].extend(re.split(" {2,}", line.strip(" ")))
        elif line and not line.startswith("#"):
            entries.append((number, re.split(" {2,}", line)))
    for number, fields in entries:
        try:
            take(*fields)
        except (KeyError, ValueError, AssertionError) as error:
            sys.exit(f"{file}:{number}: {error!r}")


def values_of(fields):
    """Of fields such as "Value=41"."""
    return dict(field.split("=", 1) for field in fields)


class Words:
    """The interfaces and the kinds of objects of an interfaces.bus."""

    def __init__(self, file):
        self.members = {}  # of an interface, the fields of each
        self.values = {}   # of an interface's properties, where nothing else says otherwise
        self.kinds = {}    # names of interfaces, and values
        read_lines(file, self.take)

    def take(self, name, *fields):
        if name == "interface":
            self.members[fields[0]], self.values[fields[0]] = [], {}
        elif name == "kind":
            interfaces = [field for field in fields if field in self.members]
            self.kinds[fields[0]] = interfaces, values_of(
                field for field in fields[1:] if field not in interfaces)
        else:
            interface = list(self.members)[-1]
            self.members[interface].append(
                [name, *(field for field in fields if not field.startswith("="))])
            for field in fields:
                if field.startswith("="):
                    self.values[interface][name] = field[1:]

    def kind_of(self, interfaces):
        for kind, (names, _) in self.kinds.items():
            if set(names) == set(interfaces):
                return kind
        return "(no kind has these interfaces)"

    def has_property(self, kind, name):
        return any(member[0] == name and member[1] != "signal"
                   for interface in self.kinds[kind][0] for member in self.members[interface])


class Object:
    """What is expected of an object."""

    def __init__(self, words, path, kind, values):
        interfaces, common = words.kinds.get(kind, ((), {}))
        self.kind = kind
        self.values = ChainMap(
            {"id": re.search(r"\d*$", path)[0], "end": re.search(r"(sensorid_.*)?$", path)[0]},
            values, common, *(words.values[name] for name in interfaces))

    def expected(self, name):
        text = self.values.get(name, "nothing")
        return re.sub(r"\$(\w+)", lambda found: self.expected(found[1]), text)

    def compare(self, seen):
        """Returns what is expected and what is seen instead, of all properties."""
        differences = [(f"{name}={self.expected(name)}", f"{name}={written(value)}")
                       for properties in seen.values() for name, value in properties.items()
                       if not matches(written(value), self.expected(name))]
        return ["  ".join(side) for side in zip(*differences)]


def matches(text, expected):
    """A * in the expected text stands for anything."""
    head, star, tail = expected.partition("*")
    if not star:
        return text == expected
    return len(text) >= len(head + tail) and text.startswith(head) and text.endswith(tail)


def text_of(kind, value):
    """A value of a D-Bus type, with strings in quotation marks."""
    if kind.startswith("a{"):
        return "{" + ", ".join(f"{text_of(kind[2], key)}: {text_of(kind[3:-1], one)}"
                               for key, one in sorted(value.items())) + "}"
    if kind.startswith("a"):
        return "[" + ", ".join(text_of(kind[1:], one) for one in value) + "]"
    if kind.startswith("("):
        return "(" + ", ".join(map(text_of, kind[1:-1], value)) + ")"
    if kind in "sog":
        return f'"{value}"'
    # JSON knows no NaN.
    return "nan" if value is None else json.dumps(value).removesuffix(".0")


def written(value):
    """As it stands in a file: a string without quotation marks, and as \\xNN what has a meaning there
    or can't be seen."""
    text = value["data"] if value["type"] == "s" else text_of(value["type"], value["data"])
    return re.sub(r"[\x00-\x1f\x7f$*\\]|^ | \Z|(?<= ) ", lambda found: f"\\x{ord(found[0]):02x}", text)


class Dump:
    """A scenario's .bus file, with the interfaces.bus beside it."""

    def __init__(self, file):
        self.words = Words(file.parent / "interfaces.bus")
        self.objects = {}
        self.common = {}  # of the last "with"
        read_lines(file, self.take)

    def take(self, path, *fields):
        if path == "with":
            self.common = values_of(fields)
            return
        assert path not in self.objects, "an object twice"
        values = values_of(fields[1:])
        for name in values:
            assert name[0].islower() or self.words.has_property(fields[0], name), f"no property {name}"
        assert fields[0] in self.words.kinds, f"no kind {fields[0]}"
        self.objects[path] = Object(self.words, path, fields[0], self.common | values)

    def difference(self, execute):
        """Returns lines that tell of objects and values, or where these are right of members, with
        the bus that a run() reaches; none where all is as it should be."""
        try:
            seen = seen_objects(execute)
        except AssertionError as error:
            return str(error)  # no daemon on the bus, now
        sides = [(path, *self.compare(path, seen.get(path)))
                 for path in sorted({*self.objects, *seen})]
        sides = [side for side in sides if len(side) > 1] or list(self.compare_members(execute))
        return "".join(f"{path}\n  expected  {expected}\n  seen      {shown}\n"
                       for path, expected, shown in sides)

    def compare(self, path, seen):
        known = self.objects.get(path)
        if seen is None:
            return known.kind, "no object"
        kind = self.words.kind_of(seen)
        if known is None:
            whole = Object(self.words, path, kind, {}).compare(seen)
            return "no object", "  ".join([kind, *whole[1:]])
        return known.compare(seen) if kind == known.kind else (known.kind, kind)

    def compare_members(self, execute):
        """Those of the same interface are the same everywhere: one object of each kind tells."""
        for path, known in {known.kind: (path, known) for path, known in self.objects.items()}.values():
            xml = execute("busctl", "--xml-interface", "introspect", SERVICE, whole_path(path))
            for interface in self.words.kinds[known.kind][0]:
                expected = self.words.members[interface]
                shown = members_in(ElementTree.fromstring(xml), interface)
                if shown != expected:
                    yield path, f"{interface}  {expected}", f"{interface}  {shown}"


def members_in(node, interface):
    """The fields of each, in their order on the bus."""
    return [[member.get("name"), *([member.get("type"), member.get("access")]
                                   if member.tag == "property" else [member.tag]),
             *(part.get("type") or f"{part.get('name').split('.')[-1]} {part.get('value')}"
               for part in member)]
            for member in node.find(f"interface[@name='{interface}']")]


def whole_path(path):
    return (SENSORS if path.startswith(("temperature/", "power/")) else INVENTORY) + path


def seen_objects(execute):
    """The interfaces and properties of each object, by its path below the root."""
    objects = {}
    for root in (SENSORS, INVENTORY):
        answer = execute("busctl", "--json=short", "call", SERVICE, root[:-1],
                         "org.freedesktop.DBus.ObjectManager", "GetManagedObjects")
        for path, interfaces in json.loads(answer)["data"][0].items():
            objects[path.removeprefix(root)] = {
                name: properties for name, properties in interfaces.items()
                if not name.startswith("org.freedesktop.DBus.")}
    return objects


def await_equality(dump, execute):
    deadline = time.monotonic() + PATIENCE
    while difference := dump.difference(execute):
        assert time.monotonic() < deadline, difference
        time.sleep(PAUSE)


def play(build, scenario):
    """Compares once the daemon has met the cards, and when it has asked them as much again."""
    dump = Dump(scenario.with_suffix(".bus"))
    with tempfile.TemporaryDirectory() as folder, \
            Server(folder, TRACELOG_LEVEL="1", TEST_CLOCK_SCALE="0.02") as server:
        server.start_bus()
        server.start_simulator(build / "simulator/simulator", scenario)
        server.start(build / "tests/vantricd_fast")
        await_equality(dump, server.run)

        def answered():
            return sum(int(line.split()[-1]) for line in
                       server.run(build / "simulator/simctl", "count").splitlines())

        before = answered()
        server.wait_for("further answer", lambda: answered() > 2 * before)
        difference = dump.difference(server.run)
        assert not difference and server.runs(), difference


def main():
    if sys.argv[1:2] == ["--play"] and len(sys.argv) == 4:
        build, folder = (Path(name).resolve() for name in sys.argv[2:])
        scenarios = [file for file in folder.glob("*.yaml") if file.stem != "storm"]
        assert scenarios
        with ThreadPoolExecutor(4) as pool:
            list(pool.map(play, itertools.repeat(build), scenarios))
    elif len(sys.argv) == 2 and not sys.argv[1].startswith("-"):
        await_equality(Dump(Path(sys.argv[1])), run)
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main()
