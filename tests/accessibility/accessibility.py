#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""LUMA as a screen reader and a user without a mouse meet it.

accessibility.py LUMA windows    every main window: names, roles, states and Tab order of its controls
accessibility.py LUMA publish    prints what a screen reader says while one changed file is published
"""

import os
import sys
from pathlib import Path

import screenreader
from screenreader import children, descendants, has, plain

HOME = Path(os.environ["HOME"])
BUTTONS = {"push button", "toggle button", "check box"}
CONTROLS = BUTTONS | {
    "radio button", "combo box", "text", "password text", "spin button", "slider", "list", "table", "tree", "tree table",
    "page tab list", "link",
}  # fmt: skip
# Their list or table stands for these.
PARTS = {"list item", "table cell", "table column header", "table row header", "tree item", "page tab", "scroll bar"}
WHOLES = {"text", "password text", "combo box", "spin button", "scroll bar"}


def place(window, accessible):
    """Its indexes from the window down, which identify it."""
    indexes = []
    while accessible and accessible != window:
        indexes.insert(0, accessible.get_index_in_parent())
        accessible = accessible.get_parent()
    return tuple(indexes)


def stop_of(window, accessible):
    """A list and then its current row report the focus, or the row alone."""
    at = place(window, accessible)
    return at[:-1] if accessible.get_role_name() in PARTS else at


def named(accessible):
    return f"{accessible.get_role_name()} '{accessible.get_name()}'"


def label_of(accessible):
    """What tells the user which control it is. A combo box's name is its value."""
    labels = [
        relation.get_target(i).get_name()
        for relation in accessible.get_relation_set()
        for i in range(relation.get_n_targets())
        if relation.get_relation_type().value_nick == "labelled-by"
    ]
    own = "" if accessible.get_role_name() == "combo box" else accessible.get_name()
    return own or "".join(labels)


def is_part(accessible):
    return accessible.get_role_name() in PARTS or accessible.get_parent().get_role_name() in WHOLES


def is_read_or_passed(accessible):
    """Text is read without the focus too; a page is a tree of its own; tabs take the focus for what holds them."""
    role = accessible.get_role_name()
    holds_tabs = any(each.get_role_name() == "page tab list" for each in children(accessible))
    return role == "label" or role.startswith("document") or holds_tabs


class Walk:
    """Everything that is wrong with the windows."""

    def __init__(self, reader):
        self.reader = reader
        self.faults = []

    def window(self, *known):
        """Checks the window that opens beside these, and gives it."""
        window = self.reader.new_window(known)
        title = f"{window.get_name()} ({window.get_role_name()})"
        # A window that is being filled may change on the way; a fault is what stays.
        for _ in range(3):
            try:
                found = self.faults_of(window)
            except self.reader.gone as error:
                found = [f"changes all the time: {error}"]
            if not found:
                break
        self.faults += [f"{title}: {fault}" for fault in found]
        print(f"{title}: {len(found)} faults", flush=True)
        return window

    def faults_of(self, window):
        shown = [each for each in descendants(window) if has(each, "showing")]
        controls = [each for each in shown if each.get_role_name() in CONTROLS and has(each, "enabled") and not is_part(each)]
        if not controls:
            return ["no control"]
        return [*unnamed(controls), *without_role(shown), *wrong_menus(window), *self.beyond_keys(window, controls)]

    def opened(self, window, *path):
        """Checks what an entry of the window's menus opens, and closes it."""
        self.reader.choose(window, *path)
        self.reader.close(self.window(window))

    def beyond_keys(self, window, controls):
        """Tab reaches all that takes the focus; what doesn't take it is in a menu."""
        wanted = {place(window, each): each for each in controls if has(each, "focusable") and each.get_role_name() != "radio button"}
        reached = self.tab_walk(window, set(wanted))
        yield from (f"Tab doesn't reach {named(each)}" for at, each in wanted.items() if at not in reached)
        entries = {plain(each.get_name()) for each in descendants(window) if each.get_role_name() == "menu item"}
        for each in controls:
            if not has(each, "focusable") and each.get_role_name() in BUTTONS and plain(each.get_name()) not in entries:
                yield f"for the mouse alone: {named(each)}"

    def tab_walk(self, window, wanted):
        """The places that Tab reaches, with all around them. Ends with the last one wanted, or when a round adds none."""
        reached = set()
        stops = set()
        idle = 0
        while idle <= len(stops) + 1:
            focus = self.reader.focus()
            here = place(window, focus) if focus else ()
            stop = stop_of(window, focus) if focus else ()
            idle = idle + 1 if stop in stops else 0
            stops.add(stop)
            reached.update(here[:length] for length in range(1, len(here) + 1))
            if wanted <= reached:
                break
            self.press_tab(window, stop)
        return reached

    def press_tab(self, window, stop):
        """Until the focus has left the stop: links in a text take Tab without an event, a busy window may lose a key."""
        heard = len(self.reader.events)

        def has_moved():
            return any(stop_of(window, each) != stop for each in self.reader.focused(heard))

        self.reader.press_until("Tab", "Tab to move the focus", has_moved, interval=1)


def unnamed(controls):
    seen = set()
    for each in controls:
        name = (each.get_role_name(), label_of(each))
        if not name[1]:
            yield f"no name: {named(each)} in {named(each.get_parent())}"
        elif name in seen:
            yield f"two of one name: {named(each)}"
        seen.add(name)


def without_role(shown):
    for each in shown:
        takes_focus = has(each, "focusable") and has(each, "enabled") and not is_part(each)
        if takes_focus and each.get_role_name() not in CONTROLS and not is_read_or_passed(each):
            yield f"takes the focus, but has no role of a control: {named(each)}"


def wrong_menus(window):
    for menu in descendants(window):
        if menu.get_role_name() == "popup menu":
            names = [each.get_name() for each in children(menu) if each.get_role_name() != "separator"]
            yield from (f"a menu with {names.count(name)} entries '{name}'" for name in set(names) if not name or names.count(name) > 1)


def windows(reader):
    walk = Walk(reader)
    reader.start()
    sites = walk.window()
    for path in [("File", "Preferences"), ("Site", "New site"), ("Help", "LUMA Manual"), ("Help", "About LUMA")]:
        walk.opened(sites, *path)
    reader.choose(sites, "Site", "Open the sample site")
    site = walk.window(sites)
    for path in [("Site", "Missing Links"), ("Site", "Unlinked Items"), ("Site", "Source Settings"), ("File", "Properties")]:
        walk.opened(site, *path)
    reader.choose(site, "Site", "Upload")
    reader.close(walk.window(site))
    reader.start(str(HOME / "Documents/LUMA sample site/pages/index.html"))
    page = walk.window(sites, site)
    for path in [("View", "Page Source"), ("View", "Script Console"), ("Edit", "Page Title")]:
        walk.opened(page, *path)
    reader.close(page)
    reader.close(site)
    # Now with a site in the list, and its form.
    walk.window()
    return walk.faults


SAID = {"push button": "button", "frame": "window", "table cell": "cell"}


class Speech:
    """The events as sentences, in their order, each said once in a row."""

    def __init__(self, reader):
        self.reader = reader
        self.lines = []
        reader.hears = self.hear

    def say(self, text):
        text = " ".join(text.split())
        if text and text != (self.lines or [""])[-1]:
            self.lines.append(text)
            print("   ", text, flush=True)

    def hear(self, kind, source, name, on):
        role = source.get_role_name()
        role = SAID.get(role, role)
        if kind.startswith("window:activate"):
            self.say(f"{name}, {role}.")
        elif kind.endswith("focused") and on:
            self.say(f"{self.focused(source, role)}.")
        elif kind.endswith("checked"):
            self.say(f"{name}, {'checked' if on else 'not checked'}.")
        elif kind.endswith("accessible-name") and role == "label" and has(source, "showing") and self.lines:
            self.say(name)

    @staticmethod
    def focused(source, role):
        if role == "cell":
            return ", ".join(row_texts(*row_of(source)))
        rows = source.get_table_iface().get_selected_rows() if role == "table" else []
        if rows:
            return f"{label_of(source)}, {role}: " + ", ".join(row_texts(source, rows[0]))
        label = label_of(source)
        value = source.get_name() if role == "combo box" else ""
        return ", ".join(text for text in [label, value, role, source.get_description()] if text)

    def has_said(self, text):
        return any(text in line for line in self.lines)

    def press_until(self, key, text):
        self.reader.press_until(key, f"a screen reader to say '{text}'", lambda: self.has_said(text))


def row_of(cell):
    table = cell.get_parent()
    return table, table.get_table_iface().get_row_at_index(cell.get_index_in_parent())


def row_texts(table, row):
    """The texts of a row's cells after their columns' titles, and whether the row is ticked."""
    iface = table.get_table_iface()
    for column in range(iface.get_n_columns()):
        each = iface.get_accessible_at(row, column)
        ticked = f", {'checked' if has(each, 'checked') else 'not checked'}" if column == 0 else ""
        if each.get_name():
            yield f"{iface.get_column_description(column)} {each.get_name()}{ticked}"


# Each in its order. The comparison may end before the dialog is there, or behind it.
STORIES = [
    [
        "Source: Contents of source, list.",
        "Move these new/modified files from Source to Destination?",
        "Upload and download, dialog.",
        "Changed files, table: What Newer, checked, File opening hours.html, Source size 25 bytes",
        "No more files to be moved.",
    ],
    ["Source: Contents of source, list.", "1 of 1 selected, 25 bytes to move", "No more files to be moved."],
]


def publish(reader):
    """With the keyboard alone: Control+U, and Enter."""
    source, destination = HOME / "source", HOME / "destination"
    for side, text in [(source, "<p>Open on Sundays, too.\n"), (destination, "<p>Open on Saturdays.\n")]:
        side.mkdir()
        (side / "about.html").write_text("<p>About us\n", encoding="utf-8")
        os.utime(side / "about.html", (1_600_000_000, 1_600_000_000))
        (side / "opening hours.html").write_text(text, encoding="utf-8")
    os.utime(destination / "opening hours.html", (1_600_000_000, 1_600_000_000))
    speech = Speech(reader)
    reader.start(str(source), str(destination))
    reader.wait("the files to have the focus", lambda: speech.has_said("Contents of source"))
    speech.press_until("ctrl+u", "Changed files, table: ")
    speech.press_until("Return", "No more files to be moved.")
    if (destination / "opening hours.html").read_bytes() != (source / "opening hours.html").read_bytes():
        yield "the file is not published"
    pane = "Source: Contents of source"
    reader.press_until("Escape", "the focus to return to the files", lambda: pane in (reader.focus().get_name(), reader.focus().get_parent().get_name()))
    for story in STORIES:
        lines = iter(speech.lines)
        yield from (f"not said, or too late: {text}" for text in story if not any(line.startswith(text) for line in lines))


if __name__ == "__main__":
    screenreader.run([sys.argv[1]], {"windows": windows, "publish": publish}[sys.argv[2]])
