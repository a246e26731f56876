"""Measures programs compiled by krelcc against the same programs in C, and prints a table.

Usage: script/bench-runtime [--quick] [--rounds N] [--only NAME]...

The pairs lie in bench/runtime/programs. The C programs use stdio, malloc and free and are compiled
by gcc -O2. The two of a pair are run in turn, and a ratio is the median of the ratios of the
rounds: what slows the machine down for a while meets both. Times are CPU time, user and system, of
the whole process. Each pair is measured twice: with its output to /dev/null, where only the
program's own work counts, and to a file, where the system's copying counts on both sides. Before
that, what the two print is compared.
"""

import argparse
import collections
import os
import pathlib
import re
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from measuring import Workshop, in_turn, median, ratio, require  # noqa: E402

PROGRAMS = pathlib.Path(__file__).resolve().parent / "programs"
QUICK_SHRINK = 10
SINK = "/dev/null"
FILE = "out"

# A pair of programs: its name, what it does, the names of its files, the values of its constants,
# definitions for the C program, the CPU time relative to C and the memory in MB that are wanted
# (None: only shown), and what is the same in both outputs: bytes, numbers or nothing.
Pair = collections.namedtuple("Pair", "name what program constants defines goal memory same")


TEN_MILLION = {"count": 10_000_000}
SIX_DIGITS = ['-DFORMAT="%g\\n"']
KNOWN_LENGTHS = ["-DKNOWN_LENGTHS"]


def concatenation(length, rounds, suffix="", defines=(), note=""):
    """Texts that grow by ten characters at a time."""
    return Pair(f"concat{length}{suffix}", f"texts growing to {length:,} characters{note}",
                "concatenation", {"rounds": rounds, "steps": length // 10}, defines, 1.0, None,
                "bytes")


def concatenations(length, rounds):
    return [concatenation(length, rounds),
            concatenation(length, rounds, "-kept", KNOWN_LENGTHS, ", C keeps their lengths")]


PAIRS = [
    Pair("integers", "integers, one per line", "integers", TEN_MILLION, [], 0.35, None, "bytes"),
    Pair("mixed", "text, integer and double (%.17g)", "mixed", TEN_MILLION, [], 0.65, None,
         "bytes"),
    Pair("doubles", "doubles, shortest text against %.17g", "doubles", TEN_MILLION, [], 0.30, None,
         "numbers"),
    Pair("doubles6", "the same against %g, six digits", "doubles", TEN_MILLION, SIX_DIGITS, None,
         None, "nothing"),
    *concatenations(20, 5_000_000),
    *concatenations(100, 1_000_000),
    *concatenations(1_000, 100_000),
    *concatenations(10_000, 2_000),
    *concatenations(400_000, 1),
    Pair("frames", "integers under 40,000 frames with a string each", "frames", TEN_MILLION, [],
         0.85, 64, "bytes"),
]


def with_constants(source, constants):
    """The program with other values of the variables that say how much it does."""
    for name, value in constants.items():
        source, count = re.subn(rf"\b{name} = \d+;", f"{name} = {value};", source)
        if count != 1:
            raise RuntimeError(f"the program must set '{name}' to a number once, not {count} times")
    return source


def compile_pair(workshop, pair, shrink):
    # The first constant says how often, the others what is done.
    (repeated, count), *others = pair.constants.items()
    constants = {repeated: max(count // shrink, 1), **dict(others)}
    for suffix in ("krl", "c"):
        source = (PROGRAMS / f"{pair.program}.{suffix}").read_text()
        pathlib.Path(workshop.file(f"{pair.name}.{suffix}")).write_text(
            with_constants(source, constants))
    workshop.run([workshop.krelcc, f"{pair.name}.krl", "-o", f"{pair.name}-krel"])
    workshop.run(["gcc", "-O2", *pair.defines, f"{pair.name}.c", "-o", f"{pair.name}-c"])


def same_bytes(krel, c):
    return all(one == other for one, other in zip(krel, c, strict=True))


def same_numbers(krel, c):
    return all(float(one) == float(other) for one, other in zip(krel, c, strict=True))


AGREEMENTS = {"bytes": same_bytes, "numbers": same_numbers, "nothing": lambda krel, c: True}


def check_output(workshop, pair):
    workshop.run([f"./{pair.name}-krel"], output="krel.txt")
    workshop.run([f"./{pair.name}-c"], output="c.txt")
    with open(workshop.file("krel.txt"), "rb") as krel, open(workshop.file("c.txt"), "rb") as c:
        if not AGREEMENTS[pair.same](krel, c):
            raise RuntimeError(f"{pair.name}: the two programs print different {pair.same}")


def measure_pair(workshop, pair, rounds, output):
    return in_turn(rounds,
                   krel=lambda: workshop.run([f"./{pair.name}-krel"], output=output),
                   c=lambda: workshop.run([f"./{pair.name}-c"], output=output))


def megabytes(samples):
    return median(samples, "peak") / 1024


HEADING = (f"{'pair':<17} {'goal':>5} {'ratio':>6} {'to file':>8}   {'Krel':>7} {'C':>7}"
           f"   {'Krel':>6} {'C':>6} {'goal':>5}   what\n"
           f"{'':17} {'':5} {'':6} {'':8}   {'CPU s':>7} {'CPU s':>7}"
           f"   {'MB':>6} {'MB':>6} {'MB':>5}")


def row(pair, sink, file):
    goal = f"{pair.goal:.2f}" if pair.goal else ""
    memory = f"{pair.memory}" if pair.memory else ""
    return (f"{pair.name:<17} {goal:>5} {ratio(sink['krel'], sink['c'], 'cpu'):6.2f}"
            f" {ratio(file['krel'], file['c'], 'cpu'):8.2f}  "
            f" {median(sink['krel'], 'cpu'):7.3f} {median(sink['c'], 'cpu'):7.3f}  "
            f" {megabytes(sink['krel']):6.1f} {megabytes(sink['c']):6.1f} {memory:>5}  "
            f" {pair.what}")


def main():
    parser = argparse.ArgumentParser(prog="script/bench-runtime",
                                     description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--quick", action="store_true",
                        help=f"1/{QUICK_SHRINK} of the work; the programs' start then weighs more")
    parser.add_argument("--rounds", type=int, default=5, metavar="N",
                        help="runs of each program (default: %(default)s)")
    parser.add_argument("--only", action="append", choices=[pair.name for pair in PAIRS],
                        metavar="NAME",
                        help="a pair, as it is called in the table; may be repeated")
    options = parser.parse_args()
    require("gcc")
    print(HEADING)
    with tempfile.TemporaryDirectory() as directory:
        workshop = Workshop(options.build.resolve(), directory, os.environ["PATH"])
        for pair in PAIRS:
            if options.only and pair.name not in options.only:
                continue
            compile_pair(workshop, pair, QUICK_SHRINK if options.quick else 1)
            check_output(workshop, pair)
            print(row(pair, *(measure_pair(workshop, pair, options.rounds, output)
                              for output in (SINK, FILE))), flush=True)
    print(f"\nload of the machine (1, 5, 15 minutes): {os.getloadavg()}, {os.cpu_count()} CPUs")
    return 0


if __name__ == "__main__":
    sys.exit(main())
