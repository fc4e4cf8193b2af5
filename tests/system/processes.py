# SPDX-License-Identifier: Apache-2.0
"""Programs beside a test: a bus, a simulator, a daemon."""

import os
import subprocess
import time
from pathlib import Path


def run(*command, good=True, **options):
    """Returns what a command wrote. Its status must be 0, or another one where good is False."""
    done = subprocess.run([str(word) for word in command], text=True, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    assert (done.returncode == 0) == good, f"{command}: {done.returncode}\n{done.stdout}"
    return done.stdout


class Server:
    """A bus and a simulator with its socket, and what is started besides; all end with the `with`,
    and with the test. What they write stands in the file log of the folder."""

    def __init__(self, folder, **environment):
        self.folder = Path(folder)
        self.processes = []
        self.environment = os.environ | environment | {
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/bus",
            "SIMULATOR_SOCKET": f"{folder}/socket",
        }

    def __enter__(self):
        return self

    def __exit__(self, *error):
        for process in reversed(self.processes):
            process.kill()
            process.wait()
        if any(error):
            print((self.folder / "log").read_text(errors="replace"))

    def start(self, *command):
        with open(self.folder / "log", "a", encoding="utf-8") as log:
            self.processes.append(subprocess.Popen(
                ["setpriv", "--pdeathsig=KILL", *map(str, command)], env=self.environment,
                cwd=self.folder, stdout=log, stderr=log))

    def start_bus(self, configuration="--session"):
        address = self.environment["DBUS_SYSTEM_BUS_ADDRESS"]
        self.start("dbus-daemon", configuration, f"--address={address}", "--nofork", "--nopidfile")
        self.wait_for("bus", (self.folder / "bus").exists)

    def start_simulator(self, program, scenario):
        self.start(program, scenario)
        self.wait_for("simulator", (self.folder / "socket").exists)

    def wait_for(self, what, condition):
        """Waits until condition() holds. Fails after a minute, or once a program has ended."""
        deadline = time.monotonic() + 60
        while not condition():
            assert self.runs() and time.monotonic() < deadline, f"no {what}"
            time.sleep(0.05)

    def runs(self):
        return all(process.poll() is None for process in self.processes)

    def run(self, *command, **options):
        return run(*command, env=self.environment, cwd=self.folder, **options)
