"""The binding generator: what it refuses. What it makes of good descriptions the other tests of the
interfaces see."""

import pathlib
import sys
import tempfile
import unittest

TOOLS = pathlib.Path(__file__).parents[2] / "tools"
sys.path.insert(0, str(TOOLS))

# pylint: disable=wrong-import-position
from bindings.cpp_types import DescriptionError, parse_type
from bindings.interface import load_interface
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


class Descriptions(unittest.TestCase):
    def test_refused_types(self):
        for text in ("", "text", "array", "array[", "array[]", "array[string", "array[string]]",
                     "array[string,string]", "dict[string]", "dict[array[byte],byte]", "struct[]",
                     "string,", "array[enum[self.Colour]]", "enum[self.Size]", "enum[a.b.Colour]",
                     "enum[self.Colour", "struct[byte;byte]"):
            with self.subTest(text), self.assertRaises(DescriptionError):
                parse_type(text, ["Colour"])

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


if __name__ == "__main__":
    unittest.main()
