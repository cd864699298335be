#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Gives the one VST 2 plug-in of an Ardour session another chunk: set-chunk.py SESSION PROGRAM CHUNK."""
import base64
import re
import sys

path, program, chunk = sys.argv[1:]
with open(chunk, "rb") as file:
    data = base64.b64encode(file.read()).decode()
with open(path, encoding="utf-8") as file:
    text = file.read()
text, count = re.subn(r"<chunk[^>]*>[^<]*<", f'<chunk program="{program}">{data}<', text)
if count != 1:
    sys.exit(f"{count} chunks in {path}")
with open(path, "w", encoding="utf-8") as file:
    file.write(text)
