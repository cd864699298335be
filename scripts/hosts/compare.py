#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares two stereo sound files of 32-bit float samples: compare.py FILE FILE [FRAMES].

FRAMES of the second file are left out at its beginning. Exits with 1 where they differ."""
import array
import struct
import sys


def samples(path):
    with open(path, "rb") as file:
        data = file.read()
    position, channels = 12, 0
    while position + 8 <= len(data):
        name, size = data[position : position + 4], struct.unpack_from("<I", data, position + 4)[0]
        if name == b"fmt ":
            channels, bits = struct.unpack_from("<H", data, position + 10)[0], struct.unpack_from("<H", data, position + 22)[0]
            if channels != 2 or bits != 32:
                sys.exit(f"{path}: not stereo with 32 bits")
        if name == b"data":
            return array.array("f", data[position + 8 : position + 8 + size])
        position += 8 + size + size % 2
    sys.exit(f"{path}: no samples")


def main():
    skipped = int(sys.argv[3]) if len(sys.argv) > 3 else 0
    first, second = samples(sys.argv[1]), samples(sys.argv[2])[2 * skipped :]
    if len(first) != len(second):
        sys.exit(f"{len(first) // 2} frames against {len(second) // 2}")
    odd = [i for i, (a, b) in enumerate(zip(first, second)) if a != b]
    if odd:
        most = max(abs(first[i] - second[i]) for i in odd)
        frame, side = odd[0] // 2, ("left", "right")[odd[0] % 2]
        sys.exit(
            f"{len(odd)} of {len(first)} samples of {sys.argv[1]} and {sys.argv[2]} differ, by up to {most:.3g}; "
            f"first in frame {frame}, {side}: {first[odd[0]]!r} against {second[odd[0]]!r}"
        )
    print(f"{len(first) // 2} frames are equal, peak {max(map(abs, first), default=0.0):.3f}")


main()
