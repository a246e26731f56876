#!/usr/bin/env python3
"""docs/check.md ends with the comments of the rules. --update writes them there.

Usage: comparePages.py KREL_MAKE_PAGES ROOT [--update]
"""

import pathlib
import subprocess
import sys

HEADING = "## The rules\n\nEach page is the comment above its rule in `tools/check/rules/`.\n"


def main():
    make_pages, root = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    rules = sorted((root / "tools" / "check" / "rules").glob("*.cpp"))
    made = subprocess.run([make_pages, "--markdown", *rules], stdout=subprocess.PIPE, text=True,
                          check=True).stdout
    document = root / "docs" / "check.md"
    text = document.read_text(encoding="utf-8")
    begin = text.index(HEADING) + len(HEADING)
    if text[begin:] == made and made.count("\n### ") > 50:
        return 0
    if sys.argv[3:] == ["--update"]:
        document.write_text(text[:begin] + made, encoding="utf-8")
        return 0
    print(f"{document} has other pages than the rules; run this with --update")
    return 1


if __name__ == "__main__":
    sys.exit(main())
