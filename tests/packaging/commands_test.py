# SPDX-License-Identifier: Apache-2.0
"""Runs the commands that README, docs, demo and manual pages show, as they stand there.

    commands_test.py SOURCE BUILD

A block of commands runs in one shell, beside a bus, a simulator and the daemon. What builds, takes
minutes or needs a booted board isn't run: its program must be there, and know the options.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SERVICE = "com.korv.zenth.vantricd"
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


def wait_for(condition):
    deadline = time.monotonic() + 60
    while not condition():
        assert time.monotonic() < deadline
        time.sleep(0.05)


def main():
    source, build = (Path(word).resolve() for word in sys.argv[1:])
    scripts = {script_of(source, block): page.name for pattern in PAGES
               for page in sorted(source.glob(pattern)) for block in blocks_of(page)}
    assert len(scripts) > 5, scripts
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        (folder / "build").symlink_to(build)
        (folder / "simulator").symlink_to(source / "simulator")
        address = f"unix:path={folder}/bus"
        places = [build / "simulator", build / "monitor", build / "src/vantric"]
        environment = os.environ | {
            "DBUS_SYSTEM_BUS_ADDRESS": address, "SIMULATOR_SOCKET": f"{folder}/socket",
            "PATH": os.pathsep.join([*map(str, places), os.environ["PATH"]])}
        started = []

        def start(*command):
            started.append(subprocess.Popen(command, cwd=folder, env=environment))

        try:
            start("dbus-daemon", "--session", f"--address={address}", "--nofork", "--nopidfile")
            wait_for((folder / "bus").exists)
            start("simulator", "simulator/scenarios/first.yaml")
            wait_for((folder / "socket").exists)
            start("vantricd")
            wait_for(lambda: subprocess.run(["vantric-monitor", "--once"], env=environment, check=False,
                                            capture_output=True).returncode == 0)
            for script, page in scripts.items():
                # A simulator in the background needs a moment until it listens.
                script = re.sub(r" &$", " &\nuntil simctl list >/dev/null 2>&1; do sleep 0.05; done",
                                script, flags=re.M)
                # What a failure leaves in the background must not keep the output open.
                script = "trap 'kill $(jobs -p) 2>/dev/null || true' EXIT\n" + script
                done = subprocess.run(["bash", "-emc", script], cwd=folder, env=environment, check=False,
                                      stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
                assert done.returncode == 0, f"{page}:\n{script}\n{done.stdout}"
        finally:
            for process in reversed(started):
                process.kill()
                process.wait()


if __name__ == "__main__":
    main()
