# SPDX-License-Identifier: Apache-2.0
"""Runs the commands that README, docs, demo and manual pages show, as they stand there.

    commands_test.py SOURCE BUILD

A block of commands runs in one shell, beside a bus, a simulator and the daemon. What builds, takes
minutes or needs a booted board isn't run: its program must be there, and know the options. A word
that the daemon doesn't know is told and ends it.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from processes import Server

PAGES = ("README.md", "CONTRIBUTING.md", "docs/*.md", "docs/man/*.rst", "platform/*.md", "demo")
RUN = re.compile(r"(build/simulator/)?(simctl|simulator|busctl|export|kill)\s|vantric(d|-monitor) +--")
# Seen by other tests, by ./check itself, or on a board only.
TRUSTED = re.compile(r"(CXX=\S+ \S+ |DESTDIR=\S+ )?(meson|ninja|systemd-sysusers|systemctl|journalctl)\b"
                     r"|(\./|tools/|benchmarks/|build/release/)\S+|vantric-monitor *(#|$)")


def blocks_of(page):
    """The blocks that begin with a command, as lists of lines."""
    text = page.read_text(encoding="utf-8")
    found = [block.splitlines() for block in re.findall(r"^```\n(.*?)^```", text, re.S | re.M)]
    plain = re.sub(r"^```.*?^```", "", text, flags=re.S | re.M)
    found += [[line[4:] for line in block.splitlines()]
              for block in re.findall(r"(?:^    \S.*\n)+", plain, re.M)]
    if page.name == "demo":
        found = [re.findall(r"^Play: .*/(simctl --help)$", text, re.M)]
    return [block for block in found if RUN.match(block[0]) or TRUSTED.match(block[0])]


def check_trusted(source, line):
    """A program of the tree is there, and any other one is installed."""
    words = [word for word in line.split("#")[0].split() if "=" not in word and '"' not in word]
    program = words[0]
    if "/" not in program:
        assert shutil.which(program) or program == "vantric-monitor", f"{line}: no {program}"
    elif not program.startswith("build/"):
        assert os.access(source / program, os.X_OK), f"{line}: no {program}"


def script_of(source, block):
    lines = []
    for line in block:
        if TRUSTED.match(line):
            check_trusted(source, line)
        else:
            assert RUN.match(line), f"a command that this test doesn't know: {line}"
            lines.append(line)
    return "\n".join(lines)


def beside_a_daemon(script):
    # A simulator in the background needs a moment until it listens.
    script = re.sub(r" &$", " &\nuntil simctl list >/dev/null 2>&1; do sleep 0.05; done", script,
                    flags=re.M)
    # What a failure leaves in the background must not keep the output open.
    return "trap 'kill $(jobs -p) 2>/dev/null || true' EXIT\n" + script


def main():
    source, build = (Path(word).resolve() for word in sys.argv[1:])
    scripts = dict.fromkeys(script_of(source, block) for pattern in PAGES
                            for page in sorted(source.glob(pattern)) for block in blocks_of(page))
    assert len(scripts) > 5, scripts
    places = [build / "simulator", build / "monitor", build / "src/vantric", os.environ["PATH"]]
    with tempfile.TemporaryDirectory() as name, \
            Server(name, PATH=os.pathsep.join(map(str, places))) as server:
        (server.folder / "build").symlink_to(build)
        (server.folder / "simulator").symlink_to(source / "simulator")
        server.start_bus()
        server.start_simulator(build / "simulator/simulator", "simulator/scenarios/first.yaml")
        server.start(build / "src/vantric/vantricd")
        server.wait_for("daemon", lambda: subprocess.run(
            [build / "monitor/vantric-monitor", "--once"], env=server.environment, check=False,
            capture_output=True).returncode == 0)
        for script in scripts:
            server.run("bash", "-emc", beside_a_daemon(script))
    told = [subprocess.run([build / "src/vantric/vantricd", word], check=False, text=True,
                           capture_output=True) for word in ("--help", "--version", "--once")]
    assert [one.returncode for one in told] == [0, 0, 2], told
    assert told[2].stderr == 'vantricd: "--once" is no argument; vantricd --help tells which are\n'


if __name__ == "__main__":
    main()
