#!/usr/bin/env python3
"""same_trees.py VEMRA COMMAND...: what COMMAND writes (see write_trees.cpp) are the trees that VEMRA exports."""

import json
import subprocess
import sys


def text(hexed):
    return "" if hexed == "-" else bytes.fromhex(hexed).decode()


def node(line):
    tree, parent, kind, label, *ports = line.split(" ")
    pairs = (port.split("=") for port in ports)
    return tree, {"id": kind, "name": text(label), "parent": int(parent), "ports": {k: text(v) for k, v in pairs}}


def output(command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


exported = json.loads(output([sys.argv[1], "trees", "export", "--format", "json"]))["trees"]
there = [node(line) for line in output(sys.argv[2:]).splitlines() if not line.startswith("vemra_tree git commit")]
here = [(tree["name"], row) for tree in exported for row in tree["nodes"]]
for a, b in zip(here, there):
    if a != b:
        sys.exit(f"here {a}\nthere {b}")
if len(here) != len(there) or not here:
    sys.exit(f"here {len(here)} nodes, there {len(there)}")
print(f"{len(here)} nodes of {len(exported)} trees are the same")
