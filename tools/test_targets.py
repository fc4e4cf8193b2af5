#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the files that the tests of one suite need, as targets for ninja.

    test_targets.py BUILD_DIR SUITE
"""

import json
import os
import subprocess
import sys


def introspect(build_dir, what):
    command = ["meson", "introspect", build_dir, f"--{what}"]
    return json.loads(subprocess.run(command, check=True, capture_output=True).stdout)


def main():
    build_dir, suite = sys.argv[1:]
    root = os.path.realpath(build_dir)
    files = {target["id"]: target["filename"] for target in introspect(build_dir, "targets")}
    needed = set()
    for test in introspect(build_dir, "tests"):
        # Meson puts the project's name in front of a suite.
        if suite in (name.split(":")[-1] for name in test["suite"]):
            needed.update(name for target in test["depends"] for name in files[target])
    for name in sorted(needed):
        print(os.path.relpath(os.path.realpath(name), root))


if __name__ == "__main__":
    main()
