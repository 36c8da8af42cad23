#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares lumactl's report of missing links with browserreader.py, which shares nothing with it, over any sites.

    comparereports.py LUMACTL SITE...

Prints a line a site: links, missing by the letter, missing as a browser reads them, the same by browserreader.py, false
alarms, overlooked; below it up to ten of the links that differ. A site of 1,000 pages takes about a minute. The exit
code is 1 if a report differs.
"""

import json
import re
import subprocess
import sys
from collections import Counter
from pathlib import Path

READER = Path(__file__).with_name("browserreader.py")
WORDS = {"folder without index page": "index", "no such place in the page": "place", "outside the site": "outside"}


def output_of(*command, most_code=1):
    run = subprocess.run(command, stdout=subprocess.PIPE, check=False)
    if run.returncode > most_code:
        sys.exit(f"{command[0]} failed")
    return run.stdout.decode("utf-8", "surrogateescape")


def missing_links(lumactl, site):
    for line in output_of(lumactl, "check", site, "--missing", "--json").splitlines():
        row = json.loads(line)
        if "link" in row:
            link = re.sub(r"[\t\n\r]", " ", row["link"])
            yield "\t".join((row["page"], row["place"], link, WORDS.get(row["why"], "file")))


def compare(lumactl, site):
    links = output_of(lumactl, "check", site, "--json").count("\n")
    by_letter = output_of(lumactl, "check", site, "--missing", "--by-letter").count("*** MISSING ***")
    found = Counter(missing_links(lumactl, site))
    expected = Counter(line for line in output_of(sys.executable, READER, site, most_code=0).split("\n") if line)
    differences = {"false alarm": found - expected, "overlooked": expected - found}
    counts = [links, by_letter, found.total(), expected.total()] + [c.total() for c in differences.values()]
    print(site, *counts, sep="\t", flush=True)
    for name, rows in differences.items():
        for row in sorted(rows)[:10]:
            print(f"    {name}: {row!r}", flush=True)
    return found == expected


def main(lumactl, *sites):
    print("site", "links", "by letter", "by browser", "truth", "false alarms", "overlooked", sep="\t")
    return 0 if all([compare(lumactl, site) for site in sites]) else 1


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
