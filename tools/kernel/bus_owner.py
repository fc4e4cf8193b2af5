#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Owns the serial lines of a simulator: gives each to the kernel's MCTP, with address and route, and
shows the endpoints on the system bus as mctpd does. It asks the cards nothing.

    bus_owner.py FOLDER

FOLDER is the simulator's; a line that comes or goes there comes or goes here. A file FOLDER/EID.eid
holds another EID that the endpoint of the line FOLDER/EID has, or 0 while it has none.
"""

import fcntl
import os
import socket
import struct
import sys
from pathlib import Path

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SERVICE = "au.com.codeconstruct.MCTP1"
ROOT = "/au/com/codeconstruct/mctp1"
NETWORK = f"{ROOT}/networks/1"
LOCAL_EID = 8
LOOK_AGAIN = 100  # milliseconds

TIOCSETD, N_MCTP = 0x5423, 28
AF_MCTP = 45
NLM_F_REQUEST, NLM_F_ACK, NLM_F_CREATE = 1, 4, 0x400
RTM_NEWLINK, RTM_NEWADDR, RTM_NEWROUTE = 16, 20, 24
IFA_LOCAL, RTA_DST, RTA_OIF = 2, 1, 4
IFF_UP, RTN_UNICAST = 1, 1


class Netlink:
    """Requests to the kernel's routing, one at a time."""

    def __init__(self):
        self.socket = socket.socket(socket.AF_NETLINK, socket.SOCK_RAW, socket.NETLINK_ROUTE)
        self.socket.bind((0, 0))

    def ask(self, kind, body):
        header = struct.pack("=IHHII", 16 + len(body), kind,
                             NLM_F_REQUEST | NLM_F_ACK | NLM_F_CREATE, 1, 0)
        self.socket.send(header + body)
        error = -struct.unpack_from("=i", self.socket.recv(4096), 16)[0]
        if error != 0:
            raise OSError(error, os.strerror(error))

    @staticmethod
    def attribute(kind, value):
        return struct.pack("=HH", 4 + len(value), kind) + value + bytes(-len(value) % 4)

    def set_up(self, index):
        self.ask(RTM_NEWLINK, struct.pack("=BxHiII", 0, 0, index, IFF_UP, IFF_UP))

    def add_address(self, index, eid):
        self.ask(RTM_NEWADDR, struct.pack("=BBBBI", AF_MCTP, 0, 0, 0, index)
                 + self.attribute(IFA_LOCAL, bytes([eid])))

    def add_route(self, index, eid):
        self.ask(RTM_NEWROUTE, struct.pack("=BBBBBBBBI", AF_MCTP, 0, 0, 0, 0, 0, 0, RTN_UNICAST, 0)
                 + self.attribute(RTA_DST, bytes([eid]))
                 + self.attribute(RTA_OIF, struct.pack("=I", index)))


class Line:
    """A serial line that the kernel drives."""

    def __init__(self, path, netlink):
        before = set(os.listdir("/sys/class/net"))
        self.terminal = os.open(path, os.O_RDWR | os.O_NOCTTY)
        fcntl.ioctl(self.terminal, TIOCSETD, struct.pack("i", N_MCTP))
        (self.interface,) = set(os.listdir("/sys/class/net")) - before
        self.index = socket.if_nametoindex(self.interface)
        self.eid = None
        netlink.set_up(self.index)
        netlink.add_address(self.index, LOCAL_EID)

    def close(self):
        os.close(self.terminal)


class Owner(dbus.service.Object):
    """mctpd's objects."""

    def __init__(self, bus, folder):
        super().__init__(bus, ROOT)
        self.folder = folder
        self.netlink = Netlink()
        self.lines = {}
        local = dbus.Array([dbus.Byte(LOCAL_EID)], signature="y")
        self.objects = {NETWORK: {"au.com.codeconstruct.MCTP.Network1": {"LocalEIDs": local}}}
        self.objects |= self.endpoint(LOCAL_EID, [0], LOCAL_EID)

    @staticmethod
    def endpoint(eid, types, line):
        kinds = dbus.Array([dbus.Byte(kind) for kind in types], signature="y")
        uuid = f"5f2c1a0e-93d4-4b61-8a7e-00000000{line:04x}"  # the simulator's for this line
        return {f"{NETWORK}/endpoints/{eid}": {
            "xyz.openbmc_project.MCTP.Endpoint": {
                "EID": dbus.Byte(eid), "NetworkId": dbus.UInt32(1), "SupportedMessageTypes": kinds},
            "xyz.openbmc_project.Common.UUID": {"UUID": uuid},
            "au.com.codeconstruct.MCTP.Endpoint1": {"Connectivity": "Available"}}}

    @dbus.service.method("org.freedesktop.DBus.ObjectManager", out_signature="a{oa{sa{sv}}}")
    def GetManagedObjects(self):
        return self.objects

    @dbus.service.signal("org.freedesktop.DBus.ObjectManager", signature="oa{sa{sv}}")
    def InterfacesAdded(self, path, interfaces):
        pass

    @dbus.service.signal("org.freedesktop.DBus.ObjectManager", signature="oas")
    def InterfacesRemoved(self, path, interfaces):
        pass

    def show(self, eid, line):
        ((path, interfaces),) = self.endpoint(eid, [0, 1], line).items()
        self.objects[path] = interfaces
        self.InterfacesAdded(path, interfaces)

    def withdraw(self, eid):
        path = f"{NETWORK}/endpoints/{eid}"
        self.InterfacesRemoved(path, list(self.objects.pop(path)))

    def follow(self):
        """Brings lines and objects up to the folder."""
        there = {path.name: path for path in self.folder.iterdir() if path.is_symlink()}
        for name in list(self.lines):
            if name not in there:
                line = self.lines.pop(name)
                if line.eid:
                    self.withdraw(line.eid)
                line.close()
        for name, path in there.items():
            if name not in self.lines:
                self.lines[name] = Line(path, self.netlink)
            line = self.lines[name]
            moved = self.folder / f"{name}.eid"
            eid = int(moved.read_text()) if moved.exists() else int(name)
            if eid != line.eid:
                if line.eid:
                    self.withdraw(line.eid)
                line.eid = eid
                if eid:
                    self.netlink.add_route(line.index, eid)
                    self.show(eid, int(name))
        return True


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SystemBus()
    owner = Owner(bus, Path(sys.argv[1]))
    owner.follow()
    name = dbus.service.BusName(SERVICE, bus)  # kept: the name goes with it
    GLib.timeout_add(LOOK_AGAIN, owner.follow)
    GLib.MainLoop().run()
    del name


if __name__ == "__main__":
    main()
