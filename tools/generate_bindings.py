#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the C++ server binding of one D-Bus interface from its description in YAML.

The description follows the schema of the OpenBMC interface repositories, with these limits: an
enumeration belongs to the interface that uses it, and methods and errors aren't there. The result
is server.hpp and server.cpp in the output folder. Needs PyYAML and Mako.
"""

import argparse
import pathlib
import sys

from mako import exceptions
from mako.lookup import TemplateLookup

from bindings.cpp_types import DescriptionError
from bindings.interface import comment, load_interface

TEMPLATES = TemplateLookup(
    directories=[str(pathlib.Path(__file__).parent / "bindings")], strict_undefined=True
)


def render(template, interface):
    """Returns the text that a template makes of the interface."""
    try:
        return TEMPLATES.get_template(template).render(interface=interface, comment=comment)
    except Exception:
        # Mako's own trace names the line of the template.
        sys.stderr.write(exceptions.text_error_template().render())
        raise


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--interface", required=True, help="such as com.korv.zenth.Sensor.ProbeObj")
    parser.add_argument("--output", required=True, type=pathlib.Path, help="folder for the result")
    parser.add_argument("--write-hook", action="store_true",
                        help="let a derived class see every write, in one operation")
    parser.add_argument("description", type=pathlib.Path, help="the .interface.yaml file")
    arguments = parser.parse_args()

    try:
        interface = load_interface(
            arguments.description, arguments.interface, arguments.write_hook)
    except DescriptionError as error:
        sys.exit(f"{arguments.description}: {error}")
    for name in ("server.hpp", "server.cpp"):
        text = render(f"{name}.mako", interface)
        (arguments.output / name).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
