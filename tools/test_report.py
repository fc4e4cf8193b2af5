#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Sums up what `meson test` left in a build directory.

Prints each failed test case, with the end of what was written about it, and as its last line the
number of passed and of failed cases.

    test_report.py BUILD_DIR
"""

import json
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

TAIL_LINES = 40
LINE_WIDTH = 200
GOOD_RESULTS = {"OK", "SKIP", "EXPECTEDFAIL"}


class Case:
    """One test case and the Meson test whose program ran it."""

    def __init__(self, program, name, passed):
        self.program = program
        self.name = name
        self.passed = passed


def read_cases(junit_file):
    """Returns the cases that ran. Skipped and disabled ones are neither passed nor failed."""
    cases = []
    for suite in ElementTree.parse(junit_file).getroot().iter("testsuite"):
        # A GoogleTest suite is named project.program.suite, a plain test is a case of its project.
        from_program = "." in suite.get("name")
        for case in suite.iter("testcase"):
            if case.find("skipped") is not None or case.get("status") == "notrun":
                continue
            passed = case.find("failure") is None and case.find("error") is None
            if from_program:
                program = suite.get("name").split(".", 1)[1].rsplit(".", 1)[0]
                name = f"{case.get('classname')}.{case.get('name')}"
            else:
                program = name = case.get("name")
            cases.append(Case(program, name, passed))
    return cases


def read_programs(log_file):
    """Returns Meson's record of each program that it ran."""
    return [json.loads(line) for line in log_file.read_text(encoding="utf-8").splitlines()]


def failed_programs(programs, cases):
    """Yields (program, names of its failed cases). A program can fail without a failed case: it
    crashed, hung, or a sanitizer ended it."""
    for program in programs:
        names = [case.name for case in cases if case.program == program["name"] and not case.passed]
        if names:
            yield program, names
        elif program["result"] not in GOOD_RESULTS:
            yield program, [f"{program['name']}: {program['result']}"]


def excerpt(output, name):
    """Returns what GoogleTest wrote about one case, or the whole output where it isn't told."""
    start = output.rfind(f"[ RUN      ] {name}")
    if start < 0:
        return output
    end = output.find(f"[  FAILED  ] {name}", start)
    return output[start:] if end < 0 else output[start:end]


def print_failure(program, names):
    output = program.get("stdout", "") + program.get("stderr", "")
    for name in names:
        print(f"FAILED {name}")
        for line in excerpt(output, name).splitlines()[-TAIL_LINES:]:
            print(f"    {line[:LINE_WIDTH]}")


def main():
    logs = Path(sys.argv[1]) / "meson-logs"
    cases = read_cases(logs / "testlog.junit.xml")
    programs = read_programs(logs / "testlog.json")
    failed = 0
    for program, names in failed_programs(programs, cases):
        failed += len(names)
        print_failure(program, names)
    # A plain test that hung stands in the XML as a case without a failure.
    bad = {program["name"] for program in programs if program["result"] not in GOOD_RESULTS}
    passed = sum(case.passed and case.name not in bad for case in cases)
    print(f"{passed} {failed}")


if __name__ == "__main__":
    main()
