#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Uses the installed LUMA from its menu entries: publishes the sample site, edits and saves a page, quits."""

import os
from pathlib import Path

import screenreader
from screenreader import descendants, has

ENTRIES = Path("/usr/share/applications")
SITE = Path(os.environ["HOME"], "Documents/LUMA sample site")


def files_in(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def use(reader):
    reader.start(str(ENTRIES / "org.luma.LUMA.desktop"))
    sites = reader.new_window([])
    print(f"started from the menu: the window {sites.get_name()}", flush=True)
    reader.choose(sites, "Site", "Open the sample site")
    site = reader.new_window([sites])
    reader.choose(site, "Site", "Upload")
    panel = reader.new_window([sites, site])
    pages, published = SITE / "pages", SITE / "published"
    reader.wait("the list of changes", lambda: any(each.get_role_name() == "table" and has(each, "focused") for each in descendants(panel)))
    reader.press_until("Return", "all files to be published", lambda: files_in(pages) == files_in(published))
    reader.wait("the end of the transfer", lambda: any(each.get_name() == "No more files to be moved." for each in descendants(panel)))
    print(f"published: {len(files_in(published))} files", flush=True)
    reader.close(panel)

    reader.start(str(ENTRIES / "org.luma.LUMA.edit.desktop"), str(pages / "about.html"))
    page = reader.new_window([sites, site])
    before = (pages / "about.html").read_bytes()
    reader.choose(page, "Edit", "Page Title")
    sheet = reader.new_window([sites, site, page])
    reader.press("ctrl+a")
    reader.type("Edited title")
    reader.press_until("Return", "the sheet to close", lambda: sheet not in reader.windows())
    reader.choose(page, "File", "Save")
    reader.wait("the saved page", lambda: b"Edited title" in (pages / "about.html").read_bytes())
    after = (pages / "about.html").read_bytes()
    changed = [number for number, (old, new) in enumerate(zip(before.splitlines(), after.splitlines(), strict=False), 1) if old != new]
    print(f"saved: line {', '.join(map(str, changed))} of {len(before.splitlines())} has changed", flush=True)
    if len(changed) != 1 or len(before.splitlines()) != len(after.splitlines()):
        yield "saving has changed more than the title"
    reader.choose(sites, "File", "Quit")
    reader.wait("LUMA to quit", lambda: not reader.application())
    print("quit", flush=True)


if __name__ == "__main__":
    screenreader.run(["gio", "launch"], use)
