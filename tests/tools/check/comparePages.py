#!/usr/bin/env python3
"""docs/check.md and docs/checked-run.md end with the comments of rules. --update writes them there.

Usage: comparePages.py KREL_MAKE_PAGES ROOT [--update]
"""

import pathlib
import subprocess
import sys

# The document, the line before its pages, the sources, and how many pages there are at least.
DOCUMENTS = [
    ("check.md", "Each page is the comment above its rule in `tools/check/rules/`.\n",
     "tools/check/rules/*.cpp", 50),
    ("checked-run.md", "Each page is a comment in `tools/machine/rules.cpp`.\n",
     "tools/machine/rules.cpp", 9),
]


def compare(make_pages, root, update, name, heading, sources, least):
    """Whether a document has the pages of its sources, or has been given them."""
    made = subprocess.run([make_pages, "--markdown", *sorted(root.glob(sources))],
                          stdout=subprocess.PIPE, text=True, check=True).stdout
    document = root / "docs" / name
    text = document.read_text(encoding="utf-8")
    begin = text.index(heading) + len(heading)
    if text[begin:] == made and made.count("\n### ") >= least:
        return True
    if update:
        document.write_text(text[:begin] + made, encoding="utf-8")
        return True
    print(f"{document} has other pages than the rules; run this with --update")
    return False


def main():
    make_pages, root = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    update = sys.argv[3:] == ["--update"]
    same = [compare(make_pages, root, update, *document) for document in DOCUMENTS]
    return 0 if all(same) else 1


if __name__ == "__main__":
    sys.exit(main())
