#!/usr/bin/env python3
"""Holds programs that krel executes itself against what compiled ones must do.

Usage: agree.py --krel PATH --way checked|unchecked cases
       agree.py --krel PATH --way checked|unchecked examples
       agree.py --krel PATH --way checked|unchecked documents
       agree.py --krel PATH --way checked|unchecked [--count COUNT] [--seed SEED] soak

Without checks everything has to agree: what is printed, the status, what is on standard error. With
checks it has to agree as well, without any report, unless the program does what the checks are for:
such programs are listed in `faults-of-programs.txt`, each with the rule and the reason.
"""

import argparse
import concurrent.futures
import functools
import pathlib
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
TESTS = HERE.parents[1]
ROOT = TESTS.parent
sys.path += [str(TESTS / "soak"), str(TESTS / "examples")]
import generator  # noqa: E402 (after the path is known)
from run_document import fenced_blocks  # noqa: E402

TIMEOUT_SECONDS = 240
FAULTED = 134
# Random programs calculate without looking at the size of numbers, and store comparisons of
# doubles as doubles.
SOAK_RULES = "overflow,wrong-type"


def run(krel, options, source):
    return subprocess.run([krel, "run", "--checked", *options, "-"], input=source,
                          capture_output=True, timeout=TIMEOUT_SECONDS, check=False)


def known_faults():
    """The programs that have faults, with the rules of these."""
    faults = {}
    for line in (HERE / "faults-of-programs.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            name, rule, _reason = line.split(None, 2)
            faults[name] = rule
    return faults


def difference(ran, stdout, status, stderr):
    actual = ran.returncode if ran.returncode >= 0 else 128 - ran.returncode
    if actual != status:
        return f"status {actual} instead of {status}: {ran.stderr[:400]!r}"
    if ran.stdout != stdout:
        return f"printed {ran.stdout[:200]!r} instead of {stdout[:200]!r}"
    if ran.stderr != stderr:
        return f"standard error is {ran.stderr[:400]!r}"
    return None


def case_source(folder):
    script = folder / "input.py"
    if script.exists():
        return subprocess.run([sys.executable, script], stdout=subprocess.PIPE, check=True).stdout
    return (folder / "input.krl").read_bytes()


def read(path, default=b""):
    return path.read_bytes() if path.exists() else default


def programs_of_cases():
    """Name, source, output, status, standard error of all cases that are run."""
    for expected in sorted((TESTS / "cases").glob("*/*/expected.run")):
        folder = expected.parent
        if not (folder / "needs-c-library").exists():
            yield (f"{folder.parent.name}/{folder.name}", case_source(folder),
                   expected.read_bytes(), int(read(folder / "expected.run.status", b"0")),
                   read(folder / "expected.run.stderr"))


def programs_of_examples():
    for path in sorted((ROOT / "examples").glob("*.krl")):
        output = ROOT / "examples" / "expected" / f"{path.stem}.out"
        yield f"examples/{path.name}", path.read_bytes(), output.read_bytes(), 0, b""


def programs_of_documents():
    """The whole programs in the documents that stand before what they print."""
    for path in [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]:
        blocks = list(fenced_blocks(path.read_text(encoding="utf-8").splitlines()))
        for (line, mark, source), (_, following, output) in zip(blocks, blocks[1:]):
            if mark == "krel" and following == "text output":
                yield f"{path.name}:{line}", source.encode(), output.encode(), 0, b""


PROGRAMS = {"cases": programs_of_cases, "examples": programs_of_examples,
            "documents": programs_of_documents}


def check_faulty(krel, name, rules, source, expected):
    """A program with faults reports the first, and without the rules does what it does compiled."""
    rule = rules.split(",")[0]
    ran = run(krel, [], source)
    if ran.returncode != FAULTED or f"[{rule}]\n".encode() not in ran.stderr:
        return f"{name}: no {rule}: {ran.returncode} {ran.stderr[:400]!r}"
    if not expected[0].startswith(ran.stdout):
        return f"{name}: printed {ran.stdout[:200]!r} before its fault"
    problem = difference(run(krel, [f"--allow={rules}"], source), *expected)
    return f"{name} with --allow={rules}: {problem}" if problem else None


def check_program(krel, way, faults, program):
    name, source, *expected = program
    if way == "checked" and name in faults:
        return check_faulty(krel, name, faults[name], source, expected)
    problem = difference(run(krel, [] if way == "checked" else ["--allow=all"], source), *expected)
    return f"{name}: {problem}" if problem else None


def check_programs(krel, way, area):
    programs = list(PROGRAMS[area]())
    names = {program[0] for program in programs}
    faults = {name: rules for name, rules in known_faults().items() if name in names}
    failures = [failure for failure in (check_program(krel, way, faults, program)
                                        for program in programs) if failure]
    return len(programs), failures


def unknown_faults():
    """What the list of programs with faults says of programs that there are not."""
    names = {program[0] for programs in PROGRAMS.values() for program in programs()}
    return [f"{name} is no program that is run" for name in known_faults() if name not in names]


def check_random(krel, way, number):
    source, expected = generator.generate(number)
    options = [f"--allow={SOAK_RULES}"] if way == "checked" else ["--allow=all"]
    problem = difference(run(krel, options, source), expected, 0, b"")
    return f"seed {number}: {problem}" if problem else None


def check_soak(krel, way, count, seed):
    numbers = range(seed, seed + count)
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        results = pool.map(functools.partial(check_random, krel, way), numbers, chunksize=10)
        return count, [failure for failure in results if failure]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--krel", required=True,
                        type=lambda text: str(pathlib.Path(text).resolve()))
    parser.add_argument("--way", required=True, choices=["checked", "unchecked"])
    parser.add_argument("--count", type=int, default=500)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("programs", choices=[*PROGRAMS, "soak"])
    options = parser.parse_args()
    if options.programs == "soak":
        count, failures = check_soak(options.krel, options.way, options.count, options.seed)
    else:
        count, failures = check_programs(options.krel, options.way, options.programs)
        failures += unknown_faults()
    for failure in failures:
        print("FAILED", failure)
    print(f"{count} programs, {options.way}, {len(failures)} failed")
    return 1 if failures or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
