#!/usr/bin/env python3
"""Checks the documents as texts: where their links lead, and how long they are.

A relative link has to lead to a file or folder, and one with an anchor to a heading of a document.
Links to other hosts are not followed.

Usage: check_documents.py [--at-most LINES] DOCUMENT...
"""

import argparse
import collections
import pathlib
import re
import sys


def without_code(text):
    """The text with its fenced blocks and code spans blanked; the lines stay where they are."""
    lines = []
    fenced = False
    for line in text.splitlines():
        fence = line.lstrip().startswith("```")
        lines.append("" if fenced or fence else re.sub(r"`[^`]*`", "", line))
        fenced ^= fence
    return "\n".join(lines)


def anchors(path):
    """Gives the anchors of a document's headings, made as the usual viewers make them."""
    found = collections.Counter()
    fenced = False
    for line in path.read_text(encoding="utf-8").splitlines():
        fenced ^= line.lstrip().startswith("```")
        heading = re.fullmatch(r"#+ +(.*)", line)
        if heading and not fenced:
            anchor = re.sub(r"[^\w -]", "", heading[1].lower()).replace(" ", "-")
            yield f"{anchor}-{found[anchor]}" if found[anchor] else anchor
            found[anchor] += 1


def check_links(path):
    """Gives (line number, what is wrong there) for every link that leads nowhere."""
    text = without_code(path.read_text(encoding="utf-8"))
    for link in re.finditer(r"\]\(([^)\s]+)\)", text):
        number = text.count("\n", 0, link.start()) + 1
        if re.match(r"[a-z]+:", link[1]):
            continue
        name, _, anchor = link[1].partition("#")
        target = path.parent / name if name else path
        if not target.exists():
            yield number, f"there is no {name}"
        elif anchor and (target.suffix != ".md" or anchor not in anchors(target)):
            yield number, f"{target.name} has no heading for #{anchor}"


def check_length(path, limit):
    count = len(path.read_text(encoding="utf-8").splitlines())
    if count > limit:
        yield count, f"{limit} lines are enough"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--at-most", type=int, metavar="LINES")
    parser.add_argument("documents", nargs="+", type=pathlib.Path, metavar="DOCUMENT")
    options = parser.parse_args()
    failed = False
    for path in options.documents:
        faults = list(check_links(path))
        if options.at_most is not None:
            faults += check_length(path, options.at_most)
        for number, fault in faults:
            print(f"{path}:{number}: {fault}")
            failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
