#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes a VST 3 preset file of a bank's chunk: preset.py CHUNK FILE."""
import struct
import sys

CLASS_ID = b"5653546B6D7137766F7274656C320000"
HEAD = 48

with open(sys.argv[1], "rb") as file:
    chunk = file.read()
state = struct.pack("<i", len(chunk)) + chunk
with open(sys.argv[2], "wb") as file:
    file.write(b"VST3" + struct.pack("<i", 1) + CLASS_ID + struct.pack("<q", HEAD + len(state)))
    file.write(state)
    file.write(b"List" + struct.pack("<i", 1) + b"Comp" + struct.pack("<qq", HEAD, len(state)))
