# SPDX-License-Identifier: Apache-2.0
"""Builds with the libraries of a board, installs into a folder, and runs the service from there.

    board_test.py SOURCE PLAIN BOARD [MESON_OPTION...]

PLAIN is a build with -Dplatform=simulator; its libraries stand where a board has its own. BOARD is
the build with those, which has each MESON_OPTION besides. The exit status is 77 after the rest has
passed where the machine doesn't let the service's user be made.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from processes import Server, run

SERVICE = "com.korv.zenth.vantricd"
SENSOR = "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_1"
PROBE = (SERVICE, SENSOR, "com.korv.zenth.Sensor.ProbeObj", "ObjectStatus")
READ = "y 2\n" # what the property is from the first reading on
FILES = {
    "bin/vantricd",
    "bin/vantric-monitor",
    "lib/systemd/system/vantricd.service",
    "lib/sysusers.d/vantricd.conf",
    f"share/dbus-1/system.d/{SERVICE}.conf",
    "share/man/man1/vantric-monitor.1",
    "share/man/man8/vantricd.8",
}
# What the bus of a test does otherwise than the system's.
NOT_IN_A_TEST = ("user", "fork", "pidfile", "listen", "includedir", "include", "servicehelper",
                 "standard_system_servicedirs")


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*")
            if path.is_symlink() or not path.is_dir()}


def build(source, folder, libraries, options):
    """Brings the board's build up to date, with the prefix of a system."""
    environment = os.environ | {"LIBRARY_PATH": str(libraries)}
    if (folder / "build.ninja").exists():
        run("meson", "configure", folder, "-Dprefix=/usr", *options)
    else:
        shutil.rmtree(folder, ignore_errors=True)
        run("meson", "setup", folder, source, "--prefix=/usr", "-Dplatform=system", *options,
            env=environment)
    run("ninja", "-C", folder, env=environment)


def check_files(board, image):
    run("meson", "install", "-C", board, "--no-rebuild", env=os.environ | {"DESTDIR": str(image)})
    assert files_below(image) == {f"usr/{name}" for name in FILES}, files_below(image)


def check_other_prefix(board, libraries, prefix):
    """Nothing is written outside of it, and systemd has nothing to say about the unit."""
    run("meson", "configure", board, f"-Dprefix={prefix}")
    run("ninja", "-C", board, env=os.environ | {"LIBRARY_PATH": str(libraries)})
    before = files_below(prefix.parent)
    run("meson", "install", "-C", board, "--no-rebuild")
    listed = (board / "meson-logs" / "install-log.txt").read_text().splitlines()
    written = {line for line in listed if not line.startswith("#")}
    assert all(Path(name).is_relative_to(prefix) for name in written), written
    assert files_below(prefix.parent) - before == {f"{prefix.name}/{name}" for name in FILES}
    if not shutil.which("systemd-analyze"):
        return
    unit = prefix / "lib/systemd/system/vantricd.service"
    told = run("systemd-analyze", "verify", unit,
               env=os.environ | {"MANPATH": str(prefix / "share/man")})
    assert told == "", told
    run("systemd-analyze", "security", "--offline=true", "--threshold=15", unit)


def write_bus_configuration(path, policy):
    """The rules of the system's bus with the shipped policy."""
    tree = ElementTree.parse("/usr/share/dbus-1/system.conf")
    root = tree.getroot()
    for child in [child for child in root if child.tag in NOT_IN_A_TEST]:
        root.remove(child)
    ElementTree.SubElement(root, "listen").text = f"unix:path={path.parent}/bus"
    ElementTree.SubElement(root, "include").text = str(policy)
    path.write_text('<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration '
                    '1.0//EN"\n "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">\n' +
                    ElementTree.tostring(root, encoding="unicode"))


def make_user(folder):
    """Adds the service's user to copies of the machine's users. Returns the files to bind."""
    (folder / "etc").mkdir()
    for name in ("passwd", "group"):
        shutil.copy(f"/etc/{name}", folder / "etc")
    run("systemd-sysusers", f"--root={folder}")
    assert re.search(r"^vantricd:", (folder / "etc/passwd").read_text(), re.MULTILINE)
    return [folder / "etc" / name for name in ("passwd", "group")]


def as_user(user):
    if user == "root":
        return []
    return ["setpriv", f"--reuid={user}", f"--regid={user}" if user != "nobody" else
            "--regid=nogroup", "--clear-groups", "--no-new-privs", "--inh-caps=-all"]


def serve(server, plain, source, image, libraries):
    """Starts a bus with the shipped policy, a simulator and the service's command line as its user.
    Returns the user."""
    unit = (image / "usr/lib/systemd/system/vantricd.service").read_text()
    command = re.search(r"^ExecStart=(\S+)$", unit, re.MULTILINE).group(1)
    user = re.search(r"^User=(\S+)$", unit, re.MULTILINE).group(1)
    configuration = server.folder / "bus.conf"
    write_bus_configuration(configuration, image / f"usr/share/dbus-1/system.d/{SERVICE}.conf")
    server.start_bus(f"--config-file={configuration}")
    server.start_simulator(plain / "simulator/simulator", source / "simulator/scenarios/first.yaml")
    for name in ("bus", "socket"):
        (server.folder / name).chmod(0o777)
    server.environment["LD_LIBRARY_PATH"] = str(libraries)
    server.start(*as_user(user), "--bounding-set=-all", image / command[1:])
    server.wait_for("reading", lambda: SERVICE in server.run("busctl", "list", "--acquired")
                    and SENSOR in server.run("busctl", "tree", "--list", SERVICE)
                    and server.run("busctl", "get-property", *PROBE) == READ)
    return user


def check_rights(server, service_user):
    """Everybody reads; root writes; root and the service's user may have the name."""
    def busctl(user, *words, **options):
        return server.run(*as_user(user), "busctl", *words, **options)

    for user in ("root", "nobody", service_user):
        assert busctl(user, "get-property", *PROBE) == READ
        busctl(user, "introspect", SERVICE, SENSOR)
    for user, may in (("nobody", False), (service_user, False), ("root", True)):
        told = busctl(user, "set-property", *PROBE, "y", "1", good=may)
        assert may or "Access denied" in told, told
    bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName")
    for user, may in (("nobody", False), (service_user, True), ("root", True)):
        told = busctl(user, "call", *bus, "su", SERVICE, "4", good=may)
        assert told == "u 3\n" if may else "Access denied" in told, told


def main():
    if sys.argv[1] == "--serve":
        plain, source, image, libraries = map(Path, sys.argv[2:])
        with Server(image.parent) as server:
            check_rights(server, serve(server, plain, source, image, libraries))
        return
    source, plain, board = map(Path, sys.argv[1:4])
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        folder.chmod(0o755) # the service's user goes through it
        libraries = folder / "libraries"
        libraries.mkdir()
        for library in plain.glob("platform/*/lib*.so*"):
            if library.is_symlink() or library.is_file():
                shutil.copy(library, libraries, follow_symlinks=False)
        build(source, board, libraries, sys.argv[4:])
        image = folder / "image"
        check_files(board, image)
        check_other_prefix(board, libraries, folder / "opt")
        bare = ["unshare", "--mount", "--propagation=private"]
        if os.geteuid() != 0 or subprocess.run([*bare, "true"], check=False).returncode != 0:
            print("the rest takes root, and mounts of its own")
            sys.exit(77)
        binds = "".join(f"mount --bind {file} /etc/{file.name} && " for file in make_user(image))
        run(*bare, "sh", "-c", binds + 'exec "$0" "$@"', sys.executable, "-B", __file__, "--serve",
            plain, source, image, libraries)


if __name__ == "__main__":
    main()
