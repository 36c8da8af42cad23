#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the missing links of a site as a browser reads them: an independent reader for comparing reports.

    browserreader.py SITE [--all]

One line each, tab-separated and sorted: page, place, link, why ("file", "index", "place", "outside"). With --all every
link, in the order of each page, and behind it the file that it leads to; both may be empty. Pages are parsed
by html5lib, style sheets and addresses read by regular expressions and urllib; nothing is shared with the program.
"""

import os
import re
import sys
import warnings
from pathlib import Path
from urllib.parse import unquote_to_bytes, urlsplit
from xml.etree import ElementTree

import html5lib

INDEX_NAMES = [b"index.html", b"index.htm", b"index.xhtml", b"index.php", b"default.htm"]
HTML = {".html", ".htm", ".shtml", ".php"}
XML = {".xhtml", ".xht", ".xml", ".svg"}
SVG_LINKS = "use script animate animateMotion animateTransform discard feImage filter linearGradient mpath pattern"
PLACES = {
    "href": f"a link area image {SVG_LINKS} radialGradient set textPath",
    "src": "img script iframe source audio video embed input track frame bgsound",
    "poster": "video",
    "data": "object",
    "action": "form",
    "formaction": "button input",
    "cite": "blockquote q del ins",
    "background": "body table thead tbody tfoot tr td th",
    "longdesc": "img iframe frame",
    "manifest": "html",
    "usemap": "img object input",
}
SVG_STYLES = set("fill stroke filter mask clip-path cursor marker-start marker-mid marker-end".split())
PLACES = {name: set(elements.lower().split()) for name, elements in PLACES.items()}
IMAGE_PROPERTIES = {"og:image", "og:url", "og:video", "og:audio", "twitter:image", "msapplication-tileimage"}
SPACE = " \t\n\f\r"
STRING = r'"((?:\\.|[^"\\\n])*)"|\'((?:\\.|[^\'\\\n])*)\''
SHEET_TOKEN = re.compile(
    rf"/\*.*?(?:\*/|\Z)|(@import)\s*(?:{STRING})|(@import\s*|(?<![\w-]))url\(\s*(?:(?:{STRING})|((?:\\.|[^\s()\"'\\])*))\s*\)|{STRING}",
    re.DOTALL | re.IGNORECASE,
)
SERVER_CODE = re.compile(rb"<\?(?!xml).*?\?>|<%.*?%>", re.DOTALL | re.IGNORECASE)


def unescape(text):
    def replace(match):
        return chr(int(match[1], 16)) if match[1] else match[2]

    return re.sub(r"\\(?:([0-9a-fA-F]{1,6})\s?|(.))", replace, text, flags=re.DOTALL)


def sheet_links(css):
    for found in SHEET_TOKEN.finditer(css):
        if found[1]:
            yield "@import", unescape(found[2] or found[3] or "")
        elif found[4] is not None:
            yield "@import" if found[4] else "url()", unescape(found[5] or found[6] or found[7] or "")


def candidates(srcset):
    rest = srcset.lstrip(SPACE + ",")
    while rest:
        address = re.match(rf"[^{SPACE}]+", rest)[0]
        rest = rest[len(address) :]
        if address.endswith(","):
            yield address.rstrip(",")
        else:
            yield address
            depth, end = 0, 0
            while end < len(rest) and (rest[end] != "," or depth):
                depth += {"(": 1, ")": -1}.get(rest[end], 0)
                end += 1
            rest = rest[end:]
        rest = rest.lstrip(SPACE + ",")


def name_of(tag):
    return tag.rsplit("}", 1)[-1] if isinstance(tag, str) else ""


def element_links(element, name, attributes):
    for attribute, value in attributes.items():
        if attribute in PLACES and name.lower() in PLACES[attribute]:
            yield attribute, value
        elif attribute == "xlink:href":
            yield attribute, value
        elif (attribute == "srcset" and name in ("img", "source")) or (attribute == "imagesrcset" and name == "link"):
            for address in candidates(value):
                yield attribute, address
        elif attribute == "ping" and name in ("a", "area"):
            for address in value.split():
                yield attribute, address
        elif attribute == "style" or attribute in SVG_STYLES:
            for _, address in sheet_links(value):
                yield "style", address
    if name == "meta":
        content = attributes.get("content", "")
        if attributes.get("http-equiv", "").lower() == "refresh":
            found = re.match(r"\s*[\d.]+\s*[;,\s]\s*(?:url\s*=\s*)?(?:'([^']*)'?|\"([^\"]*)\"?|(.*))", content, re.I | re.S)
            address = found and (found[1] or found[2] or found[3])
            if address:
                yield "content", address
        elif (attributes.get("property") or attributes.get("name") or "").lower() in IMAGE_PROPERTIES:
            yield "content", content
    if name == "style":
        yield from sheet_links("".join(element.itertext()))


class Page:
    """The addresses and anchors of one file."""

    def __init__(self, path):
        self.links, self.anchors, self.maps, self.base = [], set(), set(), None
        suffix = path.suffix.lower()
        source = path.read_bytes()
        if suffix == ".css":
            self.links = list(sheet_links(source.decode("utf-8-sig", "replace")))
            return
        self.dynamic = bool(SERVER_CODE.search(source))
        source = SERVER_CODE.sub(lambda m: b"\x1a" * len(m[0]), source)
        root = self.xml(source, path) if suffix in XML else None
        if root is None:
            root = html5lib.parse(source, namespaceHTMLElements=False)
        for element in root.iter():
            self.read(element)

    @staticmethod
    def xml(source, path):
        """None for a file that isn't well-formed."""
        try:
            return ElementTree.fromstring(source)
        except ElementTree.ParseError as error:
            print(f"{path}: {error}; read as HTML", file=sys.stderr)
            return None

    def read(self, element):
        name = name_of(element.tag)
        if not name:
            return
        attributes = {}
        for key, value in element.attrib.items():
            key = str(key)
            is_xlink = key.startswith("{http://www.w3.org/1999/xlink}")
            attributes["xlink:href" if is_xlink and key.endswith("}href") else key] = value
        if "id" in attributes:
            self.anchors.add(attributes["id"])
        if name == "a" and "name" in attributes:
            self.anchors.add(attributes["name"])
        if name == "map" and "name" in attributes:
            self.maps.add(attributes["name"])
        if name == "base" and self.base is None and "href" in attributes:
            self.base = attributes["href"]
        self.links += element_links(element, name, attributes)


class Reader:
    """The missing links of one site."""

    def __init__(self, root):
        self.root = root
        self.pages = {}
        self.target = None

    def page(self, path):
        if path not in self.pages:
            self.pages[path] = Page(path)
        return self.pages[path]

    @staticmethod
    def place(address, start, clamped):
        """The names that an address leads along from `start`; above the site None, or its root if `clamped`."""
        names = [] if address.startswith("/") else list(start)
        for segment in address.removeprefix("/").split("/"):
            dots = re.sub("%2e", ".", segment, flags=re.IGNORECASE)
            if dots == "..":
                if not names and not clamped:
                    return None
                del names[-1:]
            elif dots != ".":
                decoded = unquote_to_bytes(segment.encode("utf-8", "surrogateescape"))
                names.append(segment.encode() if b"/" in decoded or b"\0" in decoded else decoded)
        return names

    def why_missing(self, path, place, link):
        self.target = None
        page = self.page(path)
        if place == "usemap":
            return None if link.partition("#")[2] in page.maps | page.anchors else "place"
        link = link.strip("".join(map(chr, range(33))))
        # Only ordinary relative paths are reported when they climb out of the site; a browser stays at the root.
        is_ordinary = not page.base and not re.search(r"[\\:\x00-\x1f]|%2e", re.split("[?#]", link)[0], re.IGNORECASE)
        link = re.sub("[\t\n\r]", "", link)
        if "\x1a" in link or re.search(r"<%|<\?|\{\{|\{%", link):
            return None
        folder = [os.fsencode(name) for name in path.relative_to(self.root).parts[:-1]]
        start = folder
        if page.base is not None and urlsplit(page.base).netloc:
            return None
        if page.base:
            start = self.place(page.base.rpartition("/")[0], folder, True)
            if page.base.startswith("/") and page.base.count("/") == 1:
                start = []
        if re.match(r"[a-zA-Z][a-zA-Z0-9+.-]*:", link) or re.match(r"[/\\]{2}", link):
            return None
        address, _, fragment = link.partition("#")
        address = address.partition("?")[0].replace("\\", "/")
        if address == "" and not page.base:
            target, names = path, None
        else:
            names = self.place(address, start, not is_ordinary)
            if names is None:
                return "outside"
            names = [name for name in names if name]
            target = Path(os.fsdecode(os.path.join(os.fsencode(self.root), *names)))
            if target.is_dir():
                found = [name for name in INDEX_NAMES if (target / os.fsdecode(name)).is_file()]
                if not found:
                    return "index"
                target = target / os.fsdecode(found[0])
            elif not target.is_file() or re.search(r"(^|/)\.{0,2}$", address):
                return "file"
        self.target = target
        return self.why_place_is_missing(target, place, fragment)

    def why_place_is_missing(self, target, place, fragment):
        fragment = fragment.partition(":~:")[0]
        is_page = target.suffix.lower() in HTML | XML
        if not fragment or fragment.lower() == "top" or not is_page or place in ("style", "url()", "@import"):
            return None
        page = self.page(target)
        decoded = unquote_to_bytes(fragment).decode("utf-8", "replace")
        return None if page.dynamic or {fragment, decoded} & page.anchors else "place"

    def links(self):
        for folder, _, names in os.walk(self.root):
            for name in names:
                path = Path(folder) / name
                if path.suffix.lower() not in HTML | XML | {".css"}:
                    continue
                for place, link in self.page(path).links:
                    why = self.why_missing(path, place, link)
                    target = self.target.relative_to(self.root).as_posix() if self.target else ""
                    yield path.relative_to(self.root).as_posix(), place, link, why or "", target


def main(site, option=""):
    warnings.simplefilter("ignore")
    sys.stdout.reconfigure(encoding="utf-8", errors="surrogateescape")
    links = Reader(Path(site).resolve()).links()
    rows = links if option == "--all" else sorted(row[:4] for row in links if row[3])
    for row in rows:
        print("\t".join(re.sub(r"[\t\n\r]", " ", text) for text in row))


if __name__ == "__main__":
    main(*sys.argv[1:])
