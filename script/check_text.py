#!/usr/bin/env python3
"""Checks what all text files have in common, and the length of lines where no other tool does.

Prints FILE:LINE: FINDING for each fault, and ends with status 1 if there is one. The files are
named as they lie below the top of the sources:
    script/check_text.py README.md docs/*.md
"""

import fnmatch
import pathlib
import re
import sys

# Here the bytes are the point: what the tests put in, and what has to come out.
EXEMPT = ("tests/cases/*/input.krl", "tests/cases/*/expected.*", "tests/cases/*/args",
          "examples/expected/*", "tests/tools/format/goldens/*", "docs/images/*.png")

# What no line may have. A line is looked at with its end.
FAULTS = {
    "tab": re.compile(r"\t"),
    "carriage return": re.compile(r"\r"),
    "trailing blank": re.compile(r"[ \t]\r?$"),
    "no line end": re.compile(r"[^\n]\Z"),
}

# Formats in which a tab has a meaning.
TABBED = ("*.mk", "*Makefile", "*.scd")

# How many characters a line may have. In C++, Python and CMake other tools see to that.
LENGTHS = {"*.[ly]": 100, "script/*": 100, ".ci/*": 100, "*.md": 120}


def breakable(lines):
    """The lines of a Markdown text: empty where they stay whole, and links without targets."""
    fenced = False
    for line in lines:
        if line.lstrip().startswith("```"):
            fenced = not fenced
        whole = fenced or line.startswith("    ") or line.lstrip().startswith("|")
        yield "" if whole else re.sub(r"\]\([^)]*\)|^\[[^]]*\]: .*", "", line)


def findings(path, text):
    """The number of the line and the fault, for each fault of a file."""
    lines = re.findall(r"[^\n]*\n|[^\n]+", text)
    tabbed = any(fnmatch.fnmatchcase(path, pattern) for pattern in TABBED)
    for number, line in enumerate(lines, 1):
        for fault, pattern in FAULTS.items():
            if pattern.search(line) and not (fault == "tab" and tabbed):
                yield number, fault
    measured = list(breakable(lines)) if path.endswith(".md") else lines
    for pattern, limit in LENGTHS.items():
        if fnmatch.fnmatchcase(path, pattern):
            for number, line in enumerate(measured, 1):
                if len(line.rstrip("\n")) > limit:
                    yield number, f"more than {limit} characters"


def main():
    found = False
    for path in sys.argv[1:]:
        if any(fnmatch.fnmatchcase(path, pattern) for pattern in EXEMPT):
            continue
        # Bytes that are no UTF-8 count as one character each; line ends stay as they are.
        text = pathlib.Path(path).read_bytes().decode(errors="replace")
        for number, fault in sorted(findings(path, text)):
            print(f"{path}:{number}: {fault}")
            found = True
    return found


if __name__ == "__main__":
    sys.exit(main())
