#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The house rules that a machine can read. Prints every breach as file:line: text; fails when there is one.

    houserules.py [RULE...]     without a name: all of them
"""

import re
import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# Who includes whom, besides itself; each room stands on those named here, knows no other, and uses every one.
FLOORS = {
    "base": set(),
    "shell": set(),
    "html": {"base"},
    "desktop": {"base"},
    "mounts": {"base"},
    "links": {"base", "html"},
    "page": {"base", "html", "links", "shell"},
    "web": {"base", "page"},
    "browser": {"base", "desktop", "links", "mounts"},
    "editor": {"base", "desktop", "html", "links", "page", "web"},
    "site": {"base", "browser", "desktop", "mounts", "shell"},
    "lumactl": {"base", "links", "site"},
    "app": {"base", "browser", "desktop", "editor", "page", "shell", "site", "web"},
}
ROOMS = sorted(FLOORS)
LICENSED_SUFFIXES = {".cpp", ".h", ".inc", ".in", ".js", ".py", ".exp", ".cmake"}
# Headers whose classes are not one class of the header's name, and why.
SHARED_HEADERS = {
    "browser/panehost.h": "the pane's two questions to its window, read together",
    "desktop/notifications.h": "posting and hearing, the two ends of one thing",
}


def files(folders, *suffixes):
    for folder in folders:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in suffixes:
                yield path


def lines(path):
    return list(enumerate(path.read_text(encoding="utf-8").split("\n"), start=1))


def breach(path, number, text):
    return f"{path.relative_to(ROOT)}:{number}: {text}"


def arrows():
    """A room includes those it stands on and no other, and each of them is used."""
    include = re.compile(r'#include "(\w+)/')
    for room in ROOMS:
        unused = set(FLOORS[room])
        for path in files([room], ".h", ".cpp"):
            for number, line in lines(path):
                found = include.match(line)
                if not found or found[1] == room:
                    continue
                unused.discard(found[1])
                if found[1] not in FLOORS[room]:
                    yield breach(path, number, f"{room} does not stand on {found[1]}")
        for grant in sorted(unused):
            yield breach(Path(__file__), 1, f"{room} is granted {grant}, which nothing in it includes")


def circles():
    """No header reaches itself through its includes."""
    include = re.compile(r'#include "([\w/.]+\.h)"')
    graph = {
        str(path.relative_to(ROOT)): [m[1] for _, line in lines(path) if (m := include.match(line))]
        for path in files(ROOMS, ".h")
    }
    done = set()

    def visit(header, trail):
        if header in trail:
            yield f"{header}:1: includes itself: {' > '.join(trail[trail.index(header):] + [header])}"
        elif header in graph and header not in done:
            for below in graph[header]:
                yield from visit(below, trail + [header])
            done.add(header)

    for header in graph:
        yield from visit(header, [])


CLASS = re.compile(r"^class\s+(?:\[\[\w+\]\]\s+)?(\w+)(?!.*;\s*$)")


def classes():
    """A header holds one class, is named as it, and says above it what it is for."""
    for path in files(ROOMS, ".h"):
        text = lines(path)
        names = []
        for number, line in text:
            found = CLASS.match(line)
            if not found:
                continue
            if found[1] not in names:
                names.append(found[1])
            above = [l for n, l in text if n < number and not l.startswith("template")]
            if not above or not above[-1].startswith("///"):
                yield breach(path, number, f"no contract above class {found[1]}")
        if str(path.relative_to(ROOT)) in SHARED_HEADERS:
            continue
        if names and path.stem not in [name.lower() for name in names]:
            yield breach(path, 1, f"holds {', '.join(names)}, none named as the file")
        if len(names) > 1:
            yield breach(path, 1, f"holds {len(names)} classes: {', '.join(names)}")


def sleeping():
    """A test waits for what it wants to see, never for a time."""
    nap = re.compile(r"\b(qSleep|qWait|sleep_for|sleep_until|usleep|nanosleep|msleep|sleep)\s*\(")
    for path in files(["tests"], ".h", ".cpp"):
        for number, line in lines(path):
            if nap.search(line) and not line.lstrip().startswith("//"):
                yield breach(path, number, "a sleeping test")


def unfinished():
    """What is left open is finished or written down elsewhere, not marked in the source."""
    mark = re.compile(r"\b(TODO|FIXME|XXX)\b")
    for path in files(ROOMS + ["tests", "bench"], ".h", ".cpp"):
        for number, line in lines(path):
            if mark.search(line):
                yield breach(path, number, "left open")


def licence():
    """Every source names its licence in its first three lines."""
    listed = subprocess.run(["git", "ls-files"], capture_output=True, text=True, cwd=ROOT, check=False).stdout
    scripts = re.compile(r"^(scripts|bench|\.ci)/[^.]+$")
    for name in listed.splitlines():
        path = ROOT / name
        source = path.suffix in LICENSED_SUFFIXES or path.name == "CMakeLists.txt" or scripts.match(name)
        if not source or not path.exists() or "sample-site" in name:
            continue
        if not any("SPDX-License-Identifier: GPL-3.0-or-later" in line for _, line in lines(path)[:3]):
            yield breach(path, 1, "names no licence")


def form():
    """clang-format has nothing to change."""
    if not shutil.which("clang-format"):
        print("form: clang-format is not installed, not checked")
        return
    sources = [str(p) for p in files(ROOMS + ["tests", "bench"], ".h", ".cpp")]
    done = subprocess.run(
        ["clang-format", "--dry-run", "--ferror-limit=3", *sources], capture_output=True, text=True, cwd=ROOT, check=False
    )
    for line in done.stderr.splitlines():
        if "warning:" in line or "error:" in line:
            yield line


RULES = [arrows, circles, classes, sleeping, unfinished, licence, form]


def main(names):
    unknown = set(names) - {rule.__name__ for rule in RULES}
    if unknown:
        sys.exit(f"no such rule: {', '.join(sorted(unknown))}")
    found = [line for rule in RULES if not names or rule.__name__ in names for line in rule()]
    print("\n".join(found) if found else "nothing found")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
