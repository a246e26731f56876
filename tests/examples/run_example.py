#!/usr/bin/env python3
"""Compiles an example with krelcc, runs it and compares what it prints.

The program examples/NAME.krl has to print examples/expected/NAME.out, byte for byte, write
nothing to standard error and end with status 0; krelcc has to compile it without a word on
standard error.

Usage: run_example.py --krelcc PATH EXAMPLE...
       run_example.py --check-outputs FOLDER   (every expected output belongs to a program)
"""

import argparse
import difflib
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1]))
import native_build  # noqa: E402 (after the path is known)

TIMEOUT_SECONDS = 30


def run(command, directory):
    environment = {**native_build.environment(), "LC_ALL": "C", "ASAN_OPTIONS": "detect_leaks=0"}
    return subprocess.run(command, cwd=directory, env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=TIMEOUT_SECONDS, check=False)


def complaints(step, process):
    """What is wrong with a process that should have succeeded in silence."""
    found = []
    if process.returncode != 0:
        found.append(f"{step} ended with status {process.returncode}")
    if process.stderr:
        found.append(f"{step} wrote to standard error:\n" + process.stderr.decode(errors="replace"))
    return found


def difference(expected, actual):
    def lines(data):
        return data.decode(errors="backslashreplace").splitlines(keepends=True)
    return "".join(difflib.unified_diff(lines(expected), lines(actual), "expected", "printed"))


def run_example(krelcc, example):
    """Gives the list of what went wrong; an empty one means that the example passed."""
    expected = example.parent / "expected" / f"{example.stem}.out"
    if not expected.exists():
        return [f"there is no {expected}"]
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        shutil.copyfile(example, directory / example.name)
        found = complaints("krelcc", run([krelcc, example.name], directory))
        if found:
            return found
        if not (directory / example.stem).exists():
            return ["krelcc left no executable"]
        if native_build.is_by_other(directory / example.stem):
            return ["the executable is not by our own native build"]
        ran = run([str(directory / example.stem)], directory)
    found = complaints("the program", ran)
    if ran.stdout != expected.read_bytes():
        found.append("the output differs:\n" + difference(expected.read_bytes(), ran.stdout))
    return found


def check_outputs(folder):
    outputs = sorted((folder / "expected").iterdir())
    return [f"{output} belongs to no program" for output in outputs
            if not (folder / f"{output.stem}.krl").exists()]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--krelcc", type=pathlib.Path)
    parser.add_argument("--check-outputs", type=pathlib.Path, metavar="FOLDER")
    parser.add_argument("examples", nargs="*", type=pathlib.Path, metavar="EXAMPLE")
    options = parser.parse_args()
    if bool(options.examples) == bool(options.check_outputs):
        parser.error("give examples or --check-outputs")
    if options.examples and not options.krelcc:
        parser.error("examples need --krelcc")

    failed = False
    if options.check_outputs:
        for complaint in check_outputs(options.check_outputs):
            print(complaint)
            failed = True
    for example in options.examples:
        for complaint in run_example(str(options.krelcc.resolve()), example):
            print(f"FAILED {example.stem}: {complaint}")
            failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
