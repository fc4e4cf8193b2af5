#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the board file of a scenario: where its cards stand, as a board would tell it.

    board_file.py SCENARIO.yaml [--uuids] > board.json

With --uuids the endpoints are told by UUID, and may change their EIDs.
"""

import json
import sys

import yaml


def ids(pci):
    return {key: pci.get(key, 0) for key in ("vendor", "device", "subvendor", "subdevice")}


def slot_of(card):
    return {"slot": card["slot"], "embedded": card["kind"] == "embedded-nic"}


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    by_uuid = sys.argv[2:] == ["--uuids"]
    with open(sys.argv[1], encoding="utf-8") as file:
        scenario = yaml.safe_load(file)
    slots, endpoints = [], []
    for card in scenario["cards"]:
        place = slot_of(card)
        if not any(place.items() <= slot.items() for slot in slots):
            slots.append(place | {"class": card["kind"]} | ids(card.get("pci", {}))
                         | {"cpu-affinity": card.get("cpu-affinity", 0)})
        for endpoint in card["endpoints"]:
            eid = endpoint["eid"]
            name = {"uuid": f"5f2c1a0e-93d4-4b61-8a7e-00000000{eid:04x}"} if by_uuid else {"eid": eid}
            endpoints.append(place | name | {"medium": endpoint.get("medium", "vdm")}
                             | {key: endpoint[key] for key in ("bdf", "bus-address", "instance")
                                if key in endpoint})
    accelerators = [ids(entry["pci"]) | {"sensors": entry["sensors"]}
                    for entry in scenario.get("accelerator-table", []) if "sensors" in entry]
    json.dump({"slots": slots, "endpoints": endpoints, "accelerators": accelerators}, sys.stdout,
              indent=4)


if __name__ == "__main__":
    main()
