#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The house rules that a program can check. Prints every breach as file:line: text and fails if there is one.

    houserules.py [RULE...]     without a name: all but tidy_sample

A rule whose tool is missing prints "not checked" and why; ctest counts it as skipped.
"""

import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# The rooms that each room includes, besides itself: these, no others, and every one of them.
# docs/architecture.md shows the same table.
FLOORS = {
    "base": set(),
    "shell": {"base"},
    "html": {"base"},
    "desktop": {"base"},
    "mounts": {"base"},
    "links": {"base", "html"},
    "page": {"base", "html", "links", "shell"},
    "web": {"base", "page"},
    "browser": {"base", "desktop", "links", "mounts"},
    "editor": {"base", "desktop", "html", "links", "page", "web"},
    "site": {"base", "browser", "desktop", "links", "mounts", "shell"},
    "lumactl": {"base", "html", "links", "site"},
    "app": {"base", "browser", "desktop", "editor", "shell", "site", "web"},
}
ROOMS = sorted(FLOORS)
LICENSED_SUFFIXES = {".cpp", ".h", ".inc", ".in", ".js", ".py", ".exp", ".cmake"}
# Headers whose classes are not one class of the header's name, and why.
SHARED_HEADERS = {
    "browser/panehost.h": "what a pane needs of its window, read together",
    "desktop/notifications.h": "posting and hearing, the two ends of one thing",
    "links/journaltext.h": "writing and reading, the two ends of one format",
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
    """A room includes the rooms that FLOORS grants it and no others, and uses each of them."""
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
                    yield breach(path, number, f"{room} must not include {found[1]}")
        for grant in sorted(unused):
            yield breach(Path(__file__), 1, f"{room} is granted {grant} but never includes it")


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
    """A header holds one class, has its name, and has a contract above it."""
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
            yield breach(path, 1, f"holds {', '.join(names)}, none named like the file")
        if len(names) > 1:
            yield breach(path, 1, f"holds {len(names)} classes: {', '.join(names)}")


def type_names():
    """A type's name stands for one type: two in one program share the code that the compiler writes for them."""
    opening = re.compile(r"^namespace ([\w:]+)")
    definition = re.compile(r"^(?:class|struct|enum(?: class)?) (\w+)[^;]*$")
    homes = {}
    for path in files(ROOMS, ".h"):
        namespace = ""
        for number, line in lines(path):
            if found := opening.match(line):
                namespace = found[1]
            elif found := definition.match(line):
                name = f"{namespace}::{found[1]}"
                if homes.setdefault(name, path) != path:
                    yield breach(path, number, f"{name} is also in {homes[name].relative_to(ROOT)}")


SECTIONS = ["public", "signals", "public slots", "protected", "private", "private slots"]


def sections():
    """A class has its sections in the order of SECTIONS, each at most once."""
    # Labels are aligned with the class they belong to, so the indentation tells nested classes apart.
    opening = re.compile(r"^(\s*)(?:class|struct)\s[^;]*$")
    label = re.compile(rf"^(\s*)({'|'.join(SECTIONS)}):\s*$")
    for path in files(ROOMS + ["tests", "bench"], ".h", ".cpp"):
        last = {}
        for number, line in lines(path):
            if found := opening.match(line):
                last[found[1]] = -1
            elif found := label.match(line):
                if SECTIONS.index(found[2]) <= last.get(found[1], -1):
                    yield breach(path, number, f"{found[2]} comes after {SECTIONS[last[found[1]]]}")
                last[found[1]] = max(SECTIONS.index(found[2]), last.get(found[1], -1))


def sleeping():
    """A test waits for a condition, never for a time."""
    nap = re.compile(r"\b(qSleep|qWait|sleep_for|sleep_until|usleep|nanosleep|msleep|sleep)\s*\(")
    for path in files(["tests"], ".h", ".cpp"):
        for number, line in lines(path):
            if nap.search(line) and not line.lstrip().startswith("//"):
                yield breach(path, number, "a sleeping test")


def unfinished():
    """No marks for unfinished work in the sources."""
    mark = re.compile(r"\b(TODO|FIXME|XXX)\b")
    for path in files(ROOMS + ["tests", "bench"], ".h", ".cpp"):
        for number, line in lines(path):
            if mark.search(line):
                yield breach(path, number, "a mark for unfinished work")


def listed(*patterns):
    """The files under version control, and new ones that are not ignored."""
    command = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", *patterns]
    names = subprocess.run(command, capture_output=True, text=True, cwd=ROOT, check=False).stdout
    return [ROOT / name for name in names.split("\0") if name and (ROOT / name).is_file()]


def scripts(interpreter):
    """The listed files whose first line names the interpreter."""
    for path in listed():
        with path.open("rb") as file:
            first = file.readline(80)
        if first.startswith(b"#!") and re.search(rb"\b" + interpreter, first):
            yield path


def licence():
    """Every source names the licence in its first three lines."""
    without_suffix = re.compile(r"^(scripts|bench|\.ci)/[^.]+$")
    for path in listed():
        name = str(path.relative_to(ROOT))
        source = path.suffix in LICENSED_SUFFIXES or path.name == "CMakeLists.txt" or without_suffix.match(name)
        if not source or "sample-site" in name:
            continue
        if not any("SPDX-License-Identifier: GPL-3.0-or-later" in line for _, line in lines(path)[:3]):
            yield breach(path, 1, "does not name the licence")


def papers():
    """The table of rooms in docs/architecture.md shows FLOORS, and files that the papers name exist."""
    path = ROOT / "docs/architecture.md"
    row = re.compile(r"^\| `(\w+)/` \|.*\| ([^|]*) \|$")
    shown = {m[1]: (n, set(re.findall(r"\w+", m[2]))) for n, line in lines(path) if (m := row.match(line))}
    for room in ROOMS:
        number, granted = shown.get(room, (1, None))
        if granted != FLOORS[room]:
            yield breach(path, number, f"{room} includes {', '.join(sorted(FLOORS[room])) or '-'}")
    mentioned = re.compile(r"`((?:\w[\w.-]*/)+[\w.-]+\.\w+)`")
    for paper in listed("*.md"):
        for number, line in lines(paper):
            for name in mentioned.findall(line):
                if not (ROOT / name).exists():
                    yield breach(paper, number, f"names {name}, which does not exist")


def outcome(command, pattern=r".+"):
    """The lines of the command's output that match, if it fails; "not checked" if it isn't installed."""
    if not shutil.which(command[0]):
        print(f"not checked: {Path(command[0]).name} is not installed")
        return []
    done = subprocess.run(command, capture_output=True, text=True, cwd=ROOT, check=False)
    if done.returncode == 0:
        return []
    output = (done.stdout + done.stderr).splitlines()
    return [line for line in output if re.search(pattern, line)] or [f"{command[0]}: exit code {done.returncode}"]


def form():
    """clang-format has nothing to change."""
    sources = [str(path) for path in files(ROOMS + ["tests", "bench"], ".h", ".cpp")]
    yield from outcome(["clang-format", "--dry-run", "--Werror", "--ferror-limit=3", *sources], "warning:|error:")


def shell_scripts():
    """shellcheck has no complaint."""
    names = [str(path.relative_to(ROOT)) for path in scripts(rb"(ba)?sh$")]
    yield from outcome(["shellcheck", "--format=gcc", *names])


def php_scripts():
    """The PHP programs parse."""
    for path in scripts(rb"php$"):
        yield from outcome(["php", "-l", str(path.relative_to(ROOT))])


def python_scripts():
    """The Python programs parse."""
    for path in scripts(rb"python3$"):
        try:
            compile(path.read_text(encoding="utf-8"), str(path), "exec")
        except SyntaxError as error:
            yield breach(path, error.lineno or 1, error.msg)


def page_scripts():
    """ESLint has no complaint about the page-side scripts. Installed from npm's registry when first needed."""
    if not shutil.which("npm"):
        print("not checked: npm is not installed")
        return
    here = Path(__file__).parent
    tools = ROOT / "build/eslint"
    lock = (here / "package-lock.json").read_bytes()
    installed = tools / "installed.json"
    if not installed.exists() or installed.read_bytes() != lock:
        tools.mkdir(parents=True, exist_ok=True)
        for name in ["package.json", "package-lock.json"]:
            shutil.copy(here / name, tools)
        install = ["npm", "ci", "--silent", "--ignore-scripts", "--no-audit", "--no-fund", "--fetch-retries=0"]
        try:
            done = subprocess.run(install, cwd=tools, capture_output=True, timeout=120, check=False).returncode == 0
        except subprocess.TimeoutExpired:
            done = False
        if not done:
            print("not checked: ESLint could not be installed from npm's registry")
            return
        installed.write_bytes(lock)
    eslint = str(tools / "node_modules/.bin/eslint")
    config = str(here / "eslint.config.mjs")
    yield from outcome([eslint, "--max-warnings=0", "--config", config, "resources/LUMAHTMLCSSJS"])


def catalog(path):
    """The messages of a catalog: context, source, translation and whether it is finished."""
    for context in xml.parse(path).iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            yield context.findtext("name"), message.findtext("source"), translation.text or "", "type" not in translation.attrib


def translations():
    """Each catalog has every text of the sources, and a translation with the same places for values and one mnemonic."""
    if not (shutil.which("lupdate") or Path("/usr/lib/qt6/bin/lupdate").exists()):
        print("not checked: lupdate is not installed")
        return
    for path in listed("resources/translations/*.ts"):
        with tempfile.TemporaryDirectory() as folder:
            fresh = Path(shutil.copy(path, folder))
            subprocess.run([str(ROOT / "scripts/translations"), folder], capture_output=True, check=True)
            if set(catalog(path)) != set(catalog(fresh)):
                yield breach(path, 1, "not up to date; run scripts/translations")
        for context, source, translation, is_finished in catalog(path):
            places = [sorted(re.findall("%[0-9]", text)) for text in (source, translation)]
            mnemonics = [text.count("&") for text in (source, translation)]
            if not is_finished or not translation or places[0] != places[1] or mnemonics[0] != mnemonics[1]:
                yield breach(path, 1, f"{context}: {source!r} is translated as {translation!r}")


def tidy_sample():
    """clang-tidy has no complaint about twelve files: others with each commit, as all of them take too long."""
    database = Path(os.environ.get("LUMA_BUILD_DIR", ROOT / "build/dev")) / "compile_commands.json"
    if not database.exists():
        print(f"not checked: no {database}")
        return
    commit = subprocess.run(["git", "rev-parse", "HEAD"], capture_output=True, cwd=ROOT, check=False).stdout
    names = {entry["file"] for entry in json.loads(database.read_text(encoding="utf-8"))}
    sources = [str(path) for path in listed("*.cpp") if str(path) in names]
    sources.sort(key=lambda name: hashlib.sha256(commit + os.path.relpath(name, ROOT).encode()).digest())
    yield from outcome(["clang-tidy", "--quiet", "-p", str(database.parent), *sources[:12]], "(warning|error):")


SOURCE_RULES = [arrows, circles, classes, type_names, sections, sleeping, unfinished, licence, papers]
TOOL_RULES = [form, shell_scripts, php_scripts, python_scripts, page_scripts, translations]
SLOW_RULES = [tidy_sample]
RULES = SOURCE_RULES + TOOL_RULES + SLOW_RULES


def main(names):
    unknown = set(names) - {rule.__name__ for rule in RULES}
    if unknown:
        sys.exit(f"no such rule: {', '.join(sorted(unknown))}")
    chosen = [rule for rule in RULES if (rule.__name__ in names if names else rule not in SLOW_RULES)]
    found = [line for rule in chosen for line in rule()]
    print("\n".join(found) if found else "nothing found")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
