#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Breaks lines of the product at random, one at a time, and tells which share of that the tests notice.

A break changes an operator, a constant or a condition, or takes a call out. Each is built and tested in a worktree of
its own below build/mutate, so the sources here stay as they are; what does not compile is not counted. The tests of a
folder run from the nearest to the farthest and end with the first that notices.

    scripts/mutate.py --count 80 --seed 1 --report before.json
    scripts/mutate.py --again before.json --report after.json     the same breaks, against another state of the tests
    scripts/mutate.py --folders effects --programs effects-tests
"""

import argparse
import json
import os
import random
import re
import resource
import subprocess
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutate"
TREE = WORK / "tree"

# Which test programs judge a folder, nearest first.
JUDGES = {
    "framework/foundation": ["foundation-tests", "framework-document-tests", "plugin-tests"],
    "framework/document": ["framework-document-tests", "document-tests", "plugin-tests"],
    "shell": ["shell-tests", "shell-vst3-tests", "vst3-tests", "plugin-tests"],
    "document": ["document-tests", "engine-tests", "plugin-tests", "tool-tests"],
    "effects": ["effects-tests", "engine-tests", "plugin-tests", "tool-tests"],
    "engine": ["engine-tests", "plugin-tests", "vst3-tests"],
    "plugin": ["plugin-tests", "bundle-tests", "vst3-tests"],
    "tools": ["tool-tests"],
}

SWAPS = [
    (" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" == ", " != "), (" != ", " == "),
    (" + ", " - "), (" - ", " + "), (" * ", " / "), (" / ", " * "), (" += ", " -= "), (" -= ", " += "),
    (" && ", " || "), (" || ", " && "), ("true", "false"), ("false", "true"), ("++", "--"), ("--", "++"),
]
UNTOUCHED = re.compile(r"^\s*($|//|#|/\*|\*|namespace |using |template |static_assert|friend |class |struct |enum |case )")
NUMBER = re.compile(r"(?<![\w.])(\d+)(\.\d+)?(?![\w.]*x)([uUlLf]*)(?![\w.])")
CONDITION = re.compile(r"^(\s*(?:\} else )?(?:if|while) \()(.*)(\)(?: \{)?)$")
CALL = re.compile(r"^\s*[\w:.>\-\[\]*()]+\(.*\);$")


def masked(line):
    """The line with the insides of its texts and its comment blanked, so that nothing is found in them."""
    line = re.sub(r'"(?:\\.|[^"\\])*"' + r"|'(?:\\.|[^'\\])*'", lambda m: '"' * len(m.group()), line)
    return re.sub(r"//.*$", lambda m: " " * len(m.group()), line)


def breaks_of(line):
    """All broken forms of the line."""
    if UNTOUCHED.match(line):
        return []
    seen = masked(line)
    forms = []
    for old, new in SWAPS:
        for found in re.finditer(re.escape(old) if not old.isalpha() else rf"\b{old}\b", seen):
            forms.append(line[: found.start()] + new + line[found.end():])
    for found in NUMBER.finditer(seen):
        number = str(int(found.group(1)) + 1) + (found.group(2) or "") + found.group(3)
        forms.append(line[: found.start()] + number + line[found.end():])
    if condition := CONDITION.match(line):
        forms.append(f"{condition.group(1)}!({condition.group(2)}){condition.group(3)}")
    if CALL.match(seen) and " = " not in seen and not seen.lstrip().startswith("return"):
        forms.append(re.match(r"\s*", line).group() + ";")
    return forms


def folder_of(path):
    return max((folder for folder in JUDGES if path.startswith(folder + "/")), key=len, default=None)


def candidates(folders):
    """(file, number of the line, its text) of all lines that can be broken."""
    names = subprocess.run(["git", "ls-files"], cwd=TREE, capture_output=True, text=True, check=True).stdout.split()
    for name in sorted(names):
        if not name.endswith((".h", ".cpp")) or folder_of(name) not in folders:
            continue
        for number, line in enumerate((TREE / name).read_text().split("\n")):
            if breaks_of(line):
                yield name, number, line


def bound():
    """A broken loop must not eat the machine."""
    for kind, most in ((resource.RLIMIT_AS, 8 << 30), (resource.RLIMIT_FSIZE, 5 << 30)):
        resource.setrlimit(kind, (most, resource.RLIM_INFINITY))


def run(command, seconds=None):
    """Whether it went well; what takes too long did not."""
    try:
        environment = os.environ | {f"XDG_{kind}_HOME": str(WORK / "home") for kind in ("CONFIG", "STATE", "DATA")}
        done = subprocess.run(
            command, cwd=TREE, env=environment, timeout=seconds, preexec_fn=bound, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return done.returncode == 0
    except subprocess.TimeoutExpired:
        return False


def build(target):
    return run(["nice", "-n", "19", "ninja", "-C", "build/debug", target])


def test(program, seconds):
    return run(["nice", "-n", "19", f"build/debug/bin/{program}", "--gtest_fail_fast", "--gtest_brief=1"], seconds)


def prepare(revision):
    WORK.mkdir(parents=True, exist_ok=True)
    named = subprocess.run(["git", "rev-parse", revision], cwd=ROOT, capture_output=True, text=True, check=True)
    revision = named.stdout.strip()
    if not TREE.exists():
        subprocess.run(["git", "worktree", "add", "--detach", TREE, revision], cwd=ROOT, check=True)
    subprocess.run(["git", "checkout", "-q", "-f", "--detach", revision], cwd=TREE, check=True)
    subprocess.run(["cmake", "--preset", "debug", "-DVORTEL_BUILD_BENCHMARKS=OFF"], cwd=TREE, check=True,
                   stdout=subprocess.DEVNULL)


def time_programs(programs):
    """How long each may take: far more than it does when all is well."""
    limits = {}
    for program in programs:
        if not build(program):
            raise SystemExit(f"{program} does not build")
        start = time.monotonic()
        if not test(program, None):
            raise SystemExit(f"{program} fails on the sources as they are")
        limits[program] = 30 + 10 * (time.monotonic() - start)
    return limits


def judge(mutant, programs, limits):
    """The program that notices, None if none does, False if the break does not compile."""
    for program in programs:
        if not build(program):
            return False
        if not test(program, limits[program]):
            return program
    return None


def with_break(mutant, function):
    path = TREE / mutant["file"]
    text = path.read_text()
    lines = text.split("\n")
    places = [i for i, line in enumerate(lines) if line == mutant["line"]]
    if not places:
        return False  # the line is no more
    place = min(places, key=lambda i: abs(i - mutant["number"]))
    lines[place] = mutant["broken"]
    path.write_text("\n".join(lines))
    try:
        return function()
    finally:
        path.write_text(text)


def chosen(arguments):
    """The breaks to try, more than are wanted, since some will not compile."""
    if arguments.again:
        return json.loads(Path(arguments.again).read_text())["breaks"]
    generator = random.Random(arguments.seed)
    lines = list(candidates(arguments.folders))
    generator.shuffle(lines)
    return [{"file": name, "number": number, "line": line, "broken": generator.choice(breaks_of(line))}
            for name, number, line in lines]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=80)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folders", nargs="+", default=list(JUDGES), choices=list(JUDGES))
    parser.add_argument("--programs", nargs="+", help="instead of those that belong to a folder")
    parser.add_argument("--revision", default="HEAD")
    parser.add_argument("--again", help="a report whose breaks are to be tried again")
    parser.add_argument("--report", help="file for what was broken and who noticed")
    arguments = parser.parse_args()

    prepare(arguments.revision)
    used = arguments.programs or sorted({program for folder in arguments.folders for program in JUDGES[folder]})
    limits = time_programs(used)
    tried = []
    for mutant in chosen(arguments):
        if len(tried) == arguments.count:
            break
        programs = arguments.programs or JUDGES[folder_of(mutant["file"])]
        noticed = with_break(mutant, lambda: judge(mutant, programs, limits))
        if noticed is False:
            continue
        tried.append(mutant | {"noticed": noticed})
        print(f"{len(tried):3} {noticed or 'NOT NOTICED':26} {mutant['file']}:{mutant['number'] + 1}\n"
              f"      {mutant['line'].strip()}\n      {mutant['broken'].strip()}", flush=True)
        if arguments.report:
            Path(arguments.report).write_text(json.dumps({"breaks": tried}, indent=1))
    count = sum(1 for mutant in tried if mutant["noticed"])
    print(f"{count} of {len(tried)} noticed")


if __name__ == "__main__":
    main()
