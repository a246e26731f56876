#!/usr/bin/env python3
"""Compiles random model programs and holds their executables against the interpreter.

The program of number N is the same on every machine; a failure of number N is shown again by
--seed N --count 1. Failing programs are kept as case folders, ready for tests/cases.
Usage: soak.py --krelcc PATH [--count COUNT] [--seed SEED] [--keep DIR] [--jobs JOBS]
"""

import argparse
import concurrent.futures
import functools
import pathlib
import subprocess
import sys
import tempfile

import generator

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1]))
import native_build  # noqa: E402 (after the path is known)

TIMEOUT_SECONDS = 60
PROGRAMS_PER_TASK = 10


def run(command, directory):
    environment = {**native_build.environment(), "LC_ALL": "C", "ASAN_OPTIONS": "detect_leaks=0"}
    return subprocess.run(command, cwd=directory, env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=TIMEOUT_SECONDS, check=False)


def difference(expected, actual):
    """The first line in which two outputs differ."""
    expected_lines, actual_lines = expected.split(b"\n"), actual.split(b"\n")
    for number, (wanted, got) in enumerate(zip(expected_lines, actual_lines), 1):
        if wanted != got:
            return f"line {number} is {got[:100]!r} instead of {wanted[:100]!r}"
    return f"{len(actual_lines)} lines instead of {len(expected_lines)}"


def fault(krelcc, source, expected):
    """What is wrong with the compilation or the run of a program; None if nothing is."""
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        (directory / "input.krl").write_bytes(source)
        compiled = run([krelcc, "input.krl"], directory)
        if compiled.returncode != 0 or compiled.stderr:
            return f"krelcc gives {compiled.returncode}: {compiled.stderr[:200]!r}"
        if native_build.is_by_other(directory / "input"):
            return "the executable is not by our own native build"
        ran = run([str(directory / "input")], directory)
    if ran.returncode != 0 or ran.stderr:
        return f"the program gives {ran.returncode}: {ran.stderr[:200]!r}"
    return None if ran.stdout == expected else difference(expected, ran.stdout)


def check(krelcc, keep, number):
    """The line to print about a failing program; None if it does what it must."""
    source, expected = generator.generate(number)
    try:
        problem = fault(krelcc, source, expected)
    except subprocess.TimeoutExpired as timeout:
        problem = str(timeout)
    if problem is None:
        return None
    folder = keep / f"soak-{number}"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "input.krl").write_bytes(source)
    (folder / "expected.run").write_bytes(expected)
    return f"FAILED seed {number}, kept in {folder}: {problem}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--krelcc", required=True,
                        type=lambda text: str(pathlib.Path(text).resolve()))
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=0, help="number of the first program")
    parser.add_argument("--keep", type=pathlib.Path, default=pathlib.Path("soak-failures"),
                        help="folder for failing programs")
    parser.add_argument("--jobs", type=int, default=2)
    options = parser.parse_args()
    numbers = range(options.seed, options.seed + options.count)
    failures = 0
    with concurrent.futures.ProcessPoolExecutor(options.jobs) as pool:
        for line in pool.map(functools.partial(check, options.krelcc, options.keep), numbers,
                             chunksize=PROGRAMS_PER_TASK):
            if line:
                failures += 1
                print(line, flush=True)
    print(f"{options.count} programs from seed {options.seed}, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
