#!/usr/bin/env python3
"""Hands programs to krel_check_fidelity, which holds the findings against the compiler.

Usage: fidelity.py --check KREL_CHECK_FIDELITY [--count N] [--seed N] [--warnings]
                   [--expected FILE] cases|run-cases|examples|soak|large|documents|mutants

With --expected the warnings have to be those in the file.
"""

import argparse
import difflib
import pathlib
import re
import resource
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path[:0] = [str(ROOT / folder) for folder in ("bench", "tests/soak", "tests/examples")]

import generator  # noqa: E402 (after the path is known)
import inputs  # noqa: E402
import mutate  # noqa: E402
import run_document  # noqa: E402

SOAK_PROGRAMS = 500
LARGE_SIZE = 5000
STACK_BYTES = 256 << 20  # enough for the deepest programs where frames are sanitized, too


def cases(_):
    for path in sorted(ROOT.glob("tests/cases/*/*/input.krl")):
        yield path.parent.name, path.read_bytes()
    for path in sorted(ROOT.glob("tests/cases/*/*/input.py")):
        made = subprocess.run([sys.executable, "-B", path], stdout=subprocess.PIPE, check=True)
        yield path.parent.name, made.stdout


def run_cases(_):
    for path in sorted(ROOT.glob("tests/cases/run/*/input.krl")):
        yield path.parent.name, path.read_bytes()


def examples(_):
    for path in sorted(ROOT.glob("examples/*.krl")):
        yield path.name, path.read_bytes()


def soak(options):
    for number in range(options.seed, options.seed + (options.count or SOAK_PROGRAMS)):
        yield f"soak-{number}", generator.generate(number)[0]


def large(_):
    for made in inputs.INPUTS:
        yield made.name, made.text(LARGE_SIZE).encode()
    for made in inputs.NESTINGS:
        yield made.name, made.text(made.deepest()).encode()


def documents(_):
    """The rows of the tables, each in the program that stands before them."""
    for name in ["docs/sharp-edges.md", "docs/diagnostics.md", "docs/language.md"]:
        lines = (ROOT / name).read_text(encoding="utf-8").splitlines()
        frame = None
        for _, mark, text in run_document.fenced_blocks(lines):
            if "# ... the" in text and mark == "krel":
                frame = text
        is_table = False
        for number, line in enumerate(lines, 1):
            is_table = line.startswith("| You write") or (is_table and line.startswith("|"))
            if not is_table or not line.startswith("| `") or frame is None:
                continue
            cell = line.split(" | ")[0].replace("\\|", "|")
            for snippet in re.findall(r"`([^`]*)`", cell):
                if "main(" in snippet:
                    program = "int f() { return 1; }\nvoid g() { }\n" + snippet
                elif re.match(r"(int|double|void|string|boolean) \w+\(", snippet):
                    program = snippet + "\n" + frame
                else:
                    program = re.sub(r"# \.\.\. the \w+", lambda _: snippet, frame)
                yield f"{name}:{number}", program.encode()


def mutants(options):
    programs = mutate.collect([ROOT / "tests" / "cases", ROOT / "examples"])
    for number in range(options.seed, options.seed + (options.count or 1000)):
        yield f"mutant-{number}", mutate.mutant(number, programs)


# The programs, and how many there have to be at least, lest the test looks at none.
PROGRAMS = {"cases": (cases, 400), "run-cases": (run_cases, 20), "examples": (examples, 20),
            "soak": (soak, 1), "large": (large, 20), "documents": (documents, 100),
            "mutants": (mutants, 1)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", required=True, type=pathlib.Path)
    parser.add_argument("--count", type=int, help="how many random programs or mutants")
    parser.add_argument("--seed", type=int, default=0)
    parser.add_argument("--warnings", action="store_true")
    parser.add_argument("--expected", type=pathlib.Path)
    parser.add_argument("programs", choices=PROGRAMS)
    options = parser.parse_args()
    programs, least = PROGRAMS[options.programs]
    resource.setrlimit(resource.RLIMIT_STACK, (STACK_BYTES, STACK_BYTES))
    command = [options.check]
    if options.warnings or options.expected:
        command.append("--warnings")
    count = 0
    with tempfile.TemporaryFile("w+") as output:
        with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=output) as checking:
            for name, source in programs(options):
                checking.stdin.write(f"{name} {len(source)}\n".encode() + source)
                count += 1
            checking.stdin.close()
            status = checking.wait()
        output.seek(0)
        lines = output.read().splitlines()
    warnings = [line for line in lines if line.startswith("warning ")]
    if options.expected:
        expected = options.expected.read_text(encoding="utf-8").splitlines()
        lines = [line for line in lines if not line.startswith("warning ")]
        lines += difflib.unified_diff(expected, warnings, "expected", "found", lineterm="")
        status = status or warnings != expected
    print("\n".join(lines))
    if count < least:
        print(f"at least {least} programs were expected")
    return status or count < least


if __name__ == "__main__":
    sys.exit(main())
