#!/usr/bin/env python3
"""Formats the programs of other tests, which krel_format_check then holds against the originals.

Usage: checkPrograms.py --check KREL_FORMAT_CHECK cases|examples|soak|large
"""

import argparse
import pathlib
import re
import resource
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path[:0] = [str(ROOT / "bench"), str(ROOT / "tests" / "soak")]

import generator  # noqa: E402 (after the path is known)
import inputs  # noqa: E402

SOAK_PROGRAMS = 500
LARGE_SIZE = 2000
STACK_BYTES = 64 << 20  # enough for the deepest programs where frames are sanitized, too


def cases():
    for path in sorted(ROOT.glob("tests/cases/*/*/input.krl")):
        yield path.parent.name, path.read_bytes()
    for path in sorted(ROOT.glob("tests/cases/*/*/input.py")):
        made = subprocess.run([sys.executable, "-B", path], stdout=subprocess.PIPE, check=True)
        yield path.parent.name, made.stdout


def examples():
    for path in sorted(ROOT.glob("examples/*.krl")):
        yield path.name, path.read_bytes()


def soak():
    for number in range(SOAK_PROGRAMS):
        yield f"soak-{number}", generator.generate(number)[0]


def large():
    for made in inputs.INPUTS:
        yield made.name, made.text(LARGE_SIZE).encode()
    for made in inputs.NESTINGS:
        yield made.name, made.text(made.deepest()).encode()


# The programs, and how many of them have to parse at least, lest the test looks at none.
PROGRAMS = {"cases": (cases, 250), "examples": (examples, 20), "soak": (soak, SOAK_PROGRAMS),
            "large": (large, 20)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", required=True, type=pathlib.Path)
    parser.add_argument("programs", choices=PROGRAMS)
    options = parser.parse_args()
    programs, least = PROGRAMS[options.programs]
    resource.setrlimit(resource.RLIMIT_STACK, (STACK_BYTES, STACK_BYTES))
    with tempfile.TemporaryDirectory() as directory:
        paths = []
        for number, (name, source) in enumerate(programs()):
            path = pathlib.Path(directory) / f"{number}-{name}"
            path.write_bytes(source)
            paths.append(path)
        checked = subprocess.run([options.check, *paths], stdout=subprocess.PIPE, text=True,
                                 check=False)
    print(checked.stdout, end="")
    parsed = int(re.search(r"^(\d+) of", checked.stdout, re.MULTILINE)[1])
    if parsed < least:
        print(f"at least {least} were expected to")
    return checked.returncode or parsed < least


if __name__ == "__main__":
    sys.exit(main())
