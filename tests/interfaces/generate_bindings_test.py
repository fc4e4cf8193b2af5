"""The binding generator: what it makes of names and types, and what it refuses."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOLS = pathlib.Path(__file__).parents[2] / "tools"
sys.path.insert(0, str(TOOLS))

# pylint: disable=wrong-import-position
from bindings.cpp_types import DescriptionError, parse_type
from bindings.interface import load_interface, method_name
from generate_bindings import render

PROPERTY = """
description: An interface.
properties:
    - name: One
      type: {type}
      description: A property.
{more}
enumerations:
    - name: Colour
      values:
          - name: Red
          - name: Green
"""


def generate(description):
    """Returns the header that the generator makes of a description of a.b.One."""
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "One.interface.yaml")
        path.write_text(description, encoding="utf-8")
        return render("server.hpp.mako", load_interface(path, "a.b.One"))


class Names(unittest.TestCase):
    def test_method_names(self):
        for name, method in {
            "Key": "key", "LDID": "ldid", "FriendlyLDID": "friendlyLDID", "PN": "pn",
            "ECLevel": "ecLevel", "IANA": "iana", "CPUAffinity": "cpuAffinity",
            "ReAliasedName": "reAliasedName", "EntityID": "entityID",
            "Type1MinReadingRange": "type1MinReadingRange", "lower": "lower",
        }.items():
            self.assertEqual(method, method_name(name))


class Types(unittest.TestCase):
    def test_nested(self):
        parsed = parse_type("dict[string,array[struct[byte, object_path,double]]]", [])
        self.assertEqual("a{sa(yod)}", parsed.signature)
        self.assertEqual(
            "std::map<std::string, std::vector<std::tuple<std::uint8_t, "
            "sdbusplus::message::object_path, double>>>", parsed.cpp)

    def test_refused(self):
        for text in ("", "text", "array", "array[", "array[]", "array[string", "array[string]]",
                     "array[string,string]", "dict[string]", "dict[array[byte],byte]", "struct[]",
                     "string,", "array[enum[self.Colour]]", "enum[self.Size]", "enum[a.b.Colour]",
                     "enum[self.Colour", "struct[byte;byte]"):
            with self.subTest(text), self.assertRaises(DescriptionError):
                parse_type(text, ["Colour"])


class Descriptions(unittest.TestCase):
    def test_defaults(self):
        for type_, default, member in (
            ("double", "-infinity", "double one_{-std::numeric_limits<double>::infinity()};"),
            ("double", "2", "double one_{2.0};"),
            ("boolean", "true", "bool one_{true};"),
            ("uint32", "7", "std::uint32_t one_{7};"),
            ("string", "'a\"b'", 'std::string one_{"a\\"b"};'),
            ("enum[self.Colour]", "Green", "Colour one_{Colour::Green};"),
        ):
            header = generate(PROPERTY.format(type=type_, more=f"      default: {default}"))
            self.assertIn(member, header)

    def test_refused(self):
        good = PROPERTY.format(type="string", more="")
        generate(good)
        for bad, complaint in (
            (PROPERTY.format(type="text", more=""), "unknown type 'text'"),
            (PROPERTY.format(type="byte", more="      default: x"), "default 'x' doesn't fit"),
            (PROPERTY.format(type="byte", more="      default: true"), "default 'True'"),
            (PROPERTY.format(type="enum[self.Colour]", more="      default: Blue"), "'Blue'"),
            (PROPERTY.format(type="byte", more="      flags: [constant]"), "unknown flags"),
            (PROPERTY.format(type="byte", more="      defualt: 1"), "unknown ['defualt']"),
            (good.replace("- name: One", "- named: One"), "missing ['name']"),
            (good.replace("Green", "Red"), "has a value twice"),
            (good.replace("description: An", "text: An"), "missing ['description']"),
            ("- a\n- b\n", "isn't a mapping"),
            ("a: [", "while parsing"),
        ):
            with self.subTest(bad), self.assertRaises(DescriptionError) as caught:
                generate(bad)
            self.assertIn(complaint, str(caught.exception))

    def test_command_names_the_file(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "One.interface.yaml")
            path.write_text("description: 1\nmethods: []\n", encoding="utf-8")
            result = subprocess.run(
                [sys.executable, "-B", TOOLS / "generate_bindings.py", "--interface", "a.b.One",
                 "--output", folder, path],
                capture_output=True, text=True, check=False,
            )
            self.assertEqual(1, result.returncode)
            self.assertIn("One.interface.yaml: a.b.One: missing [], unknown ['methods']",
                          result.stderr)
            self.assertEqual([path], list(pathlib.Path(folder).iterdir()))


if __name__ == "__main__":
    unittest.main()
