#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""What `cmake --install` puts into a prefix, used from there. One case each; LUMA_PREFIX names the prefix.

    installed.py [CASE...]

Prints what is wrong and fails, or prints "not checked" and why where a tool is missing.
"""

import os
import pty
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

PREFIX = Path(os.environ["LUMA_PREFIX"])
SHARE = PREFIX / "share"
ENVIRONMENT = {
    "PATH": f"{PREFIX}/bin:{os.environ['PATH']}",
    "HOME": os.environ["HOME"],
    "LC_ALL": "C.UTF-8",
    "TERM": "dumb",
    "ASAN_OPTIONS": "detect_leaks=0",
}


def run(*command, folder=None, **more):
    return subprocess.run(command, capture_output=True, text=True, cwd=folder, env={**ENVIRONMENT, **more}, check=False)


def has(tool):
    if shutil.which(tool):
        return True
    print(f"not checked: {tool} is not installed")
    return False


def commands():
    return re.findall(r"^  ([a-z-]+) ", run("lumactl", "help").stdout, re.MULTILINE)


def options(command):
    text = run("lumactl", "help", command).stdout
    return set(re.findall(r"(?:^|[\s\[])(--?[a-z0][a-z-]*)", text)) | {"--help"}


def programs():
    """Both programs start from the prefix, and the resources and the folder watcher are found there."""
    for program in ["luma", "lumactl"]:
        if run(program, "--version").returncode:
            yield f"{program} does not start"
    for file in ["share/luma/LUMAHTMLCSSJS/duomo.html", "share/luma/icons/luma.svg", "share/luma/manual/index.md", "libexec/luma/LUMAWatcher"]:
        if not (PREFIX / file).exists():
            yield f"{file} is missing"


def desktop():
    """The desktop entries and the metainfo are valid, and the icons and programs that they name exist."""
    entries = sorted(SHARE.glob("applications/*.desktop"))
    if has("desktop-file-validate"):
        yield from run("desktop-file-validate", *map(str, entries)).stdout.splitlines()
    for entry in entries:
        text = entry.read_text(encoding="utf-8")
        icon = re.search(r"^Icon=(.*)$", text, re.MULTILINE)[1]
        for place in ["scalable/apps/{}.svg", "symbolic/apps/{}-symbolic.svg", "16x16/apps/{}.png", "256x256/apps/{}.png"]:
            if not (SHARE / "icons/hicolor" / place.format(icon)).exists():
                yield f"{entry.name}: {place.format(icon)} is missing"
        if not (PREFIX / "bin" / re.search(r"^Exec=(\S+)", text, re.MULTILINE)[1]).exists():
            yield f"{entry.name}: no such program"
    if not (SHARE / "mime/packages/org.luma.LUMA.xml").exists():
        yield "the type of lists of sites is missing"
    if has("appstreamcli"):
        for file in SHARE.glob("metainfo/*"):
            done = run("appstreamcli", "validate", "--no-net", str(file))
            if done.returncode:
                yield done.stdout
            version = run("lumactl", "--version").stdout.split()[1]
            if f'<release version="{version}"' not in file.read_text(encoding="utf-8"):
                yield f"{file.name}: no release {version}"


def pages():
    """The manual pages have no fault, and lumactl's describes every command and option."""
    for page in sorted(SHARE.glob("man/man1/*.1")):
        if has("mandoc"):
            yield from run("mandoc", "-T", "lint", "-W", "warning", str(page)).stdout.splitlines()
        if has("man"):
            yield from run("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", str(page), MANWIDTH="80").stderr.splitlines()
    text = (SHARE / "man/man1/lumactl.1").read_text(encoding="utf-8").replace("\\-", "-")
    for command in commands():
        if f".Ss {command}\n" not in text:
            yield f"lumactl.1 lacks {command}"


def differing(shell, asked, found, wanted):
    if set(found) != set(wanted):
        yield f"{shell}: {asked!r} completes to {sorted(set(found))}, not {sorted(set(wanted))}"


def completed(shell, complete, site):
    """What `complete` makes of some command lines in the folder `site`."""
    every = commands()
    yield from differing(shell, "lumactl un", complete("lumactl un", site), ["undo", "unlinked"])
    yield from differing(shell, "lumactl ", set(complete("lumactl ", site)) - {"--version", "--help"}, [*every, "help"])
    yield from differing(shell, "lumactl help ", complete("lumactl help ", site), every)
    for command in every:
        asked = f"lumactl {command} --"
        yield from differing(shell, asked, complete(asked, site), {o for o in options(command) if o.startswith("--")})
    yield from differing(shell, "lumactl check pa", complete("lumactl check pa", site), ["page one.html", "pages"])
    yield from differing(shell, "luma --v", complete("luma --v", site), ["--version"])
    yield from differing(shell, "luma pa", complete("luma pa", site), ["page one.html", "pages"])


def in_site(shell, complete):
    with tempfile.TemporaryDirectory() as site:
        Path(site, "page one.html").touch()
        Path(site, "pages").mkdir()
        Path(site, "other.txt").touch()
        yield from completed(shell, complete, site)


def bash():
    """bash completes commands, options and files."""
    if not has("bash"):
        return
    place = SHARE / "bash-completion/completions"
    script = (
        'source "$1/luma"; source "$1/lumactl"; read -ra COMP_WORDS <<<"$2"; [[ $2 != *" " ]] || COMP_WORDS+=("");'
        'COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "_${COMP_WORDS[0]}"; printf "%s\\n" "${COMPREPLY[@]}"'
    )
    yield from in_site(
        "bash",
        lambda line, site: run("bash", "--norc", "-c", script, "bash", str(place), line, folder=site).stdout.splitlines(),
    )


def fish():
    """fish completes commands, options and files."""
    if not has("fish"):
        return
    place = SHARE / "fish/vendor_completions.d"

    def complete(line, site):
        script = f"source {place}/luma.fish; source {place}/lumactl.fish; complete -C {line!r}"
        found = run("fish", "--no-config", "-c", script, folder=site).stdout.splitlines()
        return [word.split("\t")[0].rstrip("/") for word in found]

    yield from in_site("fish", complete)


ZSHRC = """
fpath=({place} $fpath)
autoload -Uz compinit; compinit -u -D
zle-line-init() {{
    BUFFER=$LUMA_TYPED CURSOR=$#LUMA_TYPED
    zle complete-word
    print -r -- "$BUFFER" >$HOME/completed
    BUFFER=exit
    zle accept-line
}}
zle -N zle-line-init
"""


def completed_by_zsh(home, site, typed):
    """What complete-word makes of the line: zsh completes at a terminal only."""
    process, terminal = pty.fork()
    if process == 0:
        os.chdir(site)
        os.execvpe("zsh", ["zsh", "-d", "-i"], {**ENVIRONMENT, "HOME": home, "LUMA_TYPED": typed})
    try:
        while os.read(terminal, 4096):
            pass
    except OSError:  # it has ended
        pass
    os.close(terminal)
    os.waitpid(process, 0)
    return Path(home, "completed").read_text(encoding="utf-8").rstrip("\n")


def zsh():
    """zsh completes what has one completion."""
    if not has("zsh"):
        return
    with tempfile.TemporaryDirectory() as site, tempfile.TemporaryDirectory() as home:
        Path(home, ".zshrc").write_text(ZSHRC.format(place=SHARE / "zsh/site-functions"), encoding="utf-8")
        Path(site, "pages").mkdir()
        for typed, rest in [
            ("lumactl unl", "inked "),
            ("lumactl help renam", "e "),
            ("lumactl check --mis", "sing "),
            ("lumactl publish x y --dry", "-run "),
            ("lumactl check pag", "es/"),
            ("luma --v", "ersion "),
            ("luma pag", "es/"),
        ]:
            found = completed_by_zsh(home, site, typed)
            if found.rstrip() != (typed + rest).rstrip():
                yield f"zsh: {typed!r} completes to {found!r}, not {typed + rest!r}"


CASES = [programs, desktop, pages, bash, fish, zsh]


def main(names):
    found = [line for case in CASES if not names or case.__name__ in names for line in case()]
    print("\n".join(found) if found else "nothing found")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
